// Draws the picture of the Mouse Tiler: pads with their zones above a strip of workspace tiles.
#pragma once

#include "../cairo_buffer.hpp"
#include "tiler_zones.hpp"

#include <vector>

struct mt_window_sketch {
    int tile; // index of its workspace's tile
    wlr_fbox box; // picture coordinates
};

struct mt_display {
    mt_pick pick;
    int current_tile = 0; // of the workspace that the current output shows
    std::vector<mt_window_sketch> windows;
};

// The caller owns the picture until it gives it to the scene.
cairo_buffer *mt_render(const mt_display &display);
