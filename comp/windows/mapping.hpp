// The steps that every window goes through when it is mapped and unmapped, xdg or X11.
#pragma once

#include "../fwd.hpp"

// Returns the workspace that the current output shows. Without an output or a workspace on it, returns
// workspace 1.
vantore_workspace *workspace_for_new_window(vantore_server &server);

// Centres the window in the usable box of the output under the cursor, which need not be the output of the
// window's workspace. Does nothing without such an output, or for a fullscreen window.
void center_toplevel(vantore_toplevel &t);

// Gives the window the keyboard if it can be seen. If its rule says so, its workspace is shown first. IPC
// subscribers hear of the new window in any case.
void focus_new_window(vantore_toplevel &t);

// Removes the window from server.toplevels and announces that it can no longer be seen.
void leave_shown_windows(vantore_toplevel &t);

// Focuses another window if the window that was unmapped had the keyboard, or if nobody has it. The window is
// active no more, unless it keeps the keyboard because no other window can be seen.
void refocus_after_unmap(vantore_toplevel &t);
