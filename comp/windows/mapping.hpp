// What every window goes through when it is mapped and unmapped, xdg or X11.
#pragma once

#include "../fwd.hpp"

// The workspace on show on the output under the cursor; without any, the first.
vantore_workspace *workspace_for_new_window(vantore_server &server);

// Into the middle of the usable box of the output under the cursor, which need not be the output of the
// window's workspace. Without an output, or fullscreen, the window stays where it is.
void center_toplevel(vantore_toplevel &t);

// Gives a window that can be seen the keyboard; a rule may have the view go to it first. Tells IPC
// subscribers of the new window in any case.
void focus_new_window(vantore_toplevel &t);

// Takes the window off server.toplevels, and with it from what its output shows.
void leave_shown_windows(vantore_toplevel &t);

// Hands the keyboard on where the window that has just gone had it, or nobody has it.
void refocus_after_unmap(vantore_toplevel &t);
