// Changing the workspace that an output shows.
#pragma once

#include "../fwd.hpp"

// Shows the workspace of this number: where it is on show already, else at its home, else on the current
// output; the pointer and the focus go there. The view moves, never the workspace. A number that is not 1 to
// 9 does nothing, and so does every number while there is no output.
void goto_workspace(vantore_server &server, long num);

// Pulls a workspace to an output. When another output shows it, the two outputs swap. Null and the workspace
// that is there already do nothing.
void output_set_current(vantore_output &o, vantore_workspace *ws);

// The output that the workspace was last shown on; null while that is gone or dark.
vantore_output *home_of(const vantore_workspace &ws);

// Warps the pointer to the middle of the output unless it lies there.
void focus_output(vantore_server &server, vantore_output &o);
// Focuses the workspace's most recently raised window; without any nobody has the keyboard.
void focus_workspace_top(vantore_workspace &ws);
