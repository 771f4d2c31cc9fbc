// Changing the workspace that an output shows.
#pragma once

#include "../fwd.hpp"

// Shows the workspace of this number and moves the pointer and the focus to it. It appears on the output that
// shows it already, else on its home, else on the current output. Does nothing for a number outside 1 to 9,
// or without any output.
void goto_workspace(vantore_server &server, long num);

// Shows a workspace on an output. If another output shows that workspace, the two outputs swap theirs. Does
// nothing for null or for the workspace that is already there.
void output_set_current(vantore_output &o, vantore_workspace *ws);

// Returns the output that last showed the workspace. Null while that output is missing or disabled.
vantore_output *home_of(const vantore_workspace &ws);

// Warps the pointer to the middle of the output unless it lies on that output.
void focus_output(vantore_server &server, vantore_output &o);
// Focuses the workspace's most recently raised window. Without one, nobody has the keyboard.
void focus_workspace_top(vantore_workspace &ws);
