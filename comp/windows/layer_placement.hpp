// Computes where a panel goes and what it leaves free, on boxes in layout coordinates. Clients choose all of
// these numbers, up to the limits of their types.
#pragma once

#include "../wlr.hpp"

struct layer_wish {
    int width = 0, height = 0; // 0: as much as there is
    uint32_t anchor = 0; // of zwlr_layer_surface_v1_anchor
    int exclusive_zone = 0; // -1: ignores the zones of others
    int top = 0, right = 0, bottom = 0, left = 0; // margins
};

// Returns the box of a surface on an output: within the usable box, or within the full one when the zone is
// -1. If the surface leaves its size open, it gets at least one pixel.
wlr_box layer_box(const layer_wish &wish, const wlr_box &full, const wlr_box &usable);

// Returns what an exclusive zone at an edge leaves of the usable box. The margin at that edge is part of the
// zone and may be negative. The result is never larger than before and never smaller than empty.
wlr_box without_zone(const wlr_box &usable, wlr_edges edge, int zone, int margin);
