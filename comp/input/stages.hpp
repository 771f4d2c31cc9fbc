// A table of stages that an event passes in their order, until one of them takes it.
#pragma once

// A stage is a function that returns whether it has taken the event. The stages are template arguments, so
// that the compiler can inline them: a mouse sends a thousand motions a second.
//
// using motion_stages = stages<move_drag_icon, drag_window>;
template <auto... Stage> struct stages {
    template <class... Argument> static void run(Argument &...arguments)
    {
        (void)(Stage(arguments...) || ...);
    }
};
