// What the arrow keys do with windows: focus, move, resize. dx and dy are -1, 0 or 1, and one of them is 0.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

#include <optional>

// Returns how far a box lies from another in a direction, centre to centre. Distance to the side costs more
// than distance ahead. Returns nothing unless the box lies more than one pixel further in that direction.
std::optional<double> direction_score(const wlr_box &from, const wlr_box &candidate, int dx, int dy);

// Focuses the nearest visible window in that direction, on any output. In a stack, the neighbouring tab comes
// first.
void focus_direction(vantore_server &server, int dx, int dy);

// Swaps a tile with its neighbour in tile order. Moves a floating window by 40 pixels.
void move_direction(vantore_server &server, int dx, int dy);
// Swaps the tile that is the action_target with the next one (1) or the one before (-1). The order does not
// wrap around.
void move_focused_in_tiles(vantore_server &server, int dir);

// Changes a tile's share of the space, or a floating window's size by 40 pixels.
void resize_direction(vantore_server &server, int dx, int dy);
// Changes the master's share of the width on the workspace of the current output.
void adjust_master(vantore_server &server, double delta);
