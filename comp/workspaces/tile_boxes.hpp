// Where the tiles of a workspace lie: arithmetic only.
#pragma once

#include "../wlr.hpp"
#include "workspace.hpp"

#include <span>

inline constexpr int max_tiles = 64; // on one workspace; windows beyond are left where they are

// What one tile asks of the room that it shares. A weight that is not above 0 counts as 1.
struct tile_weight {
    double width = 0; // share along its row, or along the column beside the master
    double height = 0; // of its row, in the grid; a row never weighs less than 1
};

struct tile_rules {
    vantore_tile_mode mode = TM_MASTER;
    wlr_box area{}; // what the tiles fill, layout coordinates
    int gap = 0; // pixels between tiles
    double master_ratio = 0; // the master's share of the width
};

// What a gap all around leaves of an output's usable box; at least 1 by 1.
wlr_box tile_area(const wlr_box &usable, int gap);

// One box for each weight, in tile order; the first is the master. Pixels that truncation loses fall to the
// last tile of a row or column. Sizes may come out below 1 where the area is too narrow for the gaps, except
// where the mode raises them; whoever places a tile raises them all.
void tile_boxes(const tile_rules &rules, std::span<const tile_weight> weights, std::span<wlr_box> boxes);
