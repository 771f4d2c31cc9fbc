// Where a panel goes and what it leaves: arithmetic on boxes in layout coordinates. Clients choose all of
// these numbers, up to the ends of their types.
#pragma once

#include "../wlr.hpp"

struct layer_wish {
    int width = 0, height = 0; // 0: as much as there is
    uint32_t anchor = 0; // of zwlr_layer_surface_v1_anchor
    int exclusive_zone = 0; // -1: lies over the zones of others
    int top = 0, right = 0, bottom = 0, left = 0; // margins
};

// The box of a surface on an output: within the usable box, or within the full one where the zone is -1. At
// least one pixel in size, where the surface leaves the size open.
wlr_box layer_box(const layer_wish &wish, const wlr_box &full, const wlr_box &usable);

// What an exclusive zone at an edge leaves of the usable box. The margin there, of any sign, counts as part
// of the zone. Never more than before, never less than nothing.
wlr_box without_zone(const wlr_box &usable, wlr_edges edge, int zone, int margin);
