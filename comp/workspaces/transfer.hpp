// Moving windows between workspaces, and windows and workspaces between outputs.
#pragma once

#include "../fwd.hpp"

// The output before (dir below 0) or after another in the list of outputs, newest first, around its ends.
// Null for null and where there is no other.
vantore_output *adjacent_output(vantore_server &server, const vantore_output *from, int dir);

// Shows a workspace on an output, with its windows in the same places of that output. What the output showed
// is on none then; the output that it comes from gets another. Null and a disabled target do nothing.
void move_workspace_to_output(vantore_workspace *ws, vantore_output &target);
void move_ws_to_adjacent_output(vantore_server &server, int dir);

// The window goes, the view and the focus stay. Does nothing when there is no such workspace.
void move_toplevel_to_workspace(vantore_toplevel &t, long num);
// The same for the head of server.toplevels.
void move_focused_to_workspace(vantore_server &server, long num);

// The head of server.toplevels goes to the workspace that the next output shows and keeps the focus.
void move_focused_to_adjacent_output(vantore_server &server, int dir);
