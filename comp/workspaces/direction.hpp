// What the arrow keys do with windows: focus, move, resize. dx and dy are -1, 0 or 1, one of them 0.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

#include <optional>

// How far a box lies from another in a direction, centre to centre; a step aside costs more than one ahead.
// Nothing for a box that does not lie at least a pixel further that way.
std::optional<double> direction_score(const wlr_box &from, const wlr_box &candidate, int dx, int dy);

// Focuses the nearest visible window in that direction, on any output; in a stack the next tab first.
void focus_direction(vantore_server &server, int dx, int dy);

// A tile changes places with its neighbour in tile order, a floating window moves by 40 pixels.
void move_direction(vantore_server &server, int dx, int dy);
// The focused tile changes places with the next one (1) or the one before (-1); the order does not wrap.
void move_focused_in_tiles(vantore_server &server, int dir);

// A tile changes its share of the room, a floating window its size by 40 pixels.
void resize_direction(vantore_server &server, int dx, int dy);
// Changes the master's share of the width on the workspace of the current output.
void adjust_master(vantore_server &server, double delta);
