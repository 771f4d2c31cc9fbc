// Floating and tiling, for a window and for a whole workspace.
#pragma once

#include "../fwd.hpp"
#include "workspace.hpp"

// Makes the window of action_target start or stop floating. Does nothing to a fullscreen window.
void toggle_float_focused(vantore_server &server);

// Changes the layout of a workspace. Its windows keep their `floating` flag. A change from tiling to floating
// returns each window to its last floating box and dissolves the stacks.
void set_ws_layout(vantore_workspace &ws, vantore_layout target);
// Switches the workspace of the current output to the other layout.
void toggle_ws_layout(vantore_server &server);

// Sets the tile mode. A floating workspace only remembers it.
void set_ws_tile_mode(vantore_workspace &ws, vantore_tile_mode mode);
// Selects the next mode on the workspace of the current output. A floating workspace becomes tiling in master
// mode, and its windows do not remember where they floated.
void cycle_tile_mode(vantore_server &server);
