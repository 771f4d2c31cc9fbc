// Moves windows between workspaces, and windows and workspaces between outputs.
#pragma once

#include "../fwd.hpp"
#include "../outputs/layout_repair.hpp"

// Returns the output before (dir below 0) or after another in the list of outputs. The list has the newest
// first and wraps around. Passes over outputs that are turned off. Null for null, or when there is no other
// output.
vantore_output *adjacent_output(vantore_server &server, const vantore_output *from, int dir);

// Shows a workspace on an output, with its windows at the same places on that output. The workspace that the
// output showed before is then on no output. The output that the workspace comes from gets another one. Does
// nothing for null or a disabled target.
void move_workspace_to_output(vantore_workspace *ws, vantore_output &target);
void move_ws_to_adjacent_output(vantore_server &server, int dir);

// Moves the window and all boxes that it may return to, because its output has moved. Does nothing visible to
// a window without a scene tree.
void shift_window(vantore_toplevel &t, const layout_offset &by);

// Moves the window to another workspace, and lays both out. The focus stays.
void carry_to_workspace(vantore_toplevel &t, vantore_workspace &ws);
// Moves the window. The view stays, and the old workspace keeps the focus. Does nothing when there is no such
// workspace.
void move_toplevel_to_workspace(vantore_toplevel &t, long num);
// Does the same for the window of action_target.
void move_focused_to_workspace(vantore_server &server, long num);

// Moves the window of action_target to the workspace that the next output shows. The window keeps the focus.
void move_focused_to_adjacent_output(vantore_server &server, int dir);
