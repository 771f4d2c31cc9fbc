// The overview: the windows of a workspace as live tiles over the output, beside a strip of the output's
// workspaces. The user picks a window, closes one, changes the workspace or drags a window to another one.
// The windows themselves stay where they are.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Opens the overview on the output under the pointer, or closes it. It does not open while the session is
// locked, where the settings forbid it, or when no workspace has a window to show.
void overview_toggle(vantore_server &server);

// Closes the overview and gives the focus back. Does nothing unless it is active.
void overview_exit(vantore_server &server);

// Draws an active overview anew, with nothing selected or pressed.
void overview_rebuild(vantore_server &server);

// Gives the keyboard and the pointer of an active overview back to the clients. It is no longer active then.
void overview_free_input(vantore_server &server);

// Call it when an output's usable box has changed.
void overview_output_changed(vantore_server &server, const vantore_output &o);

// What a mode does.
void overview_end(vantore_server &server);
void overview_window_leaves(vantore_server &server, const vantore_toplevel &t);
void overview_window_left(vantore_server &server);
void overview_output_leaves(vantore_server &server, const wlr_output *output);
