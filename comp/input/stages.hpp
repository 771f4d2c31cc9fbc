// A table of stages that an event passes in their order, until one of them takes it.
#pragma once

// using motion_stages = stages<move_drag_icon, drag_window>;
// A stage is a function that returns whether it has taken the event. The compiler sees through the table,
// because motions are many.
template <auto... Stage> struct stages {
    template <class... Event> static void run(Event &...event) { (void)(Stage(event...) || ...); }
};
