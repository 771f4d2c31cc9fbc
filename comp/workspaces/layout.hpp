// Floating and tiling, of a window and of a whole workspace.
#pragma once

#include "../fwd.hpp"
#include "workspace.hpp"

// The head of server.toplevels starts or stops floating; fullscreen windows stay as they are.
void toggle_float_focused(vantore_server &server);

// The layout of a workspace; the windows keep their `floating`. From tiling to floating each returns to its
// last floating box and stacks end.
void set_ws_layout(vantore_workspace &ws, vantore_layout target);
// The same for the workspace of the current output, to the other layout.
void toggle_ws_layout(vantore_server &server);

// A floating workspace only remembers the mode.
void set_ws_tile_mode(vantore_workspace &ws, vantore_tile_mode mode);
// The next mode on the workspace of the current output; a floating one becomes tiling in master mode, and
// its windows do not remember where they floated.
void cycle_tile_mode(vantore_server &server);
