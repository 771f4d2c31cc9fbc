// Computes where the tiles of a workspace lie.
#pragma once

#include "../wlr.hpp"
#include "workspace.hpp"

#include <span>

inline constexpr int max_tiles = 64; // on one workspace; further windows stay where they are

// A tile's weights in the space that it shares. A weight that is not above 0 counts as 1.
struct tile_weight {
    double width = 0; // its share along a row, or along the column beside the master
    double height = 0; // the share of its row in the grid; a row never weighs less than 1
};

struct tile_rules {
    vantore_tile_mode mode = TM_MASTER;
    wlr_box area{}; // the tiles fill this, in layout coordinates
    int gap = 0; // pixels between tiles
    double master_ratio = 0; // the master's share of the width
};

// Returns what a gap all around leaves of an output's usable box, at least 1 by 1.
wlr_box tile_area(const wlr_box &usable, int gap);

// Computes one box for each weight, in tile order. The first is the master. The last tile of a row or column
// takes the pixels that truncation loses. Where the area is too narrow for the gaps, sizes may fall below 1
// in modes that do not raise them, so whoever places a tile raises its size to 1.
void tile_boxes(const tile_rules &rules, std::span<const tile_weight> weights, std::span<wlr_box> boxes);
