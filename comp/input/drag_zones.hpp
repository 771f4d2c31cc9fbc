// Where a dragged window would land, and how large a resized one becomes: arithmetic only. Boxes and points
// are in layout coordinates.
#pragma once

#include "../wlr.hpp"

// Where a dragged tile lands on another tile.
enum drop_zone : unsigned char { DROP_BEFORE, DROP_AFTER, DROP_STACK, DROP_SWAP };

// The frame is the whole tile, its bar included.
drop_zone zone_at(const wlr_box &frame, double x, double y);
// What to show of the frame for a zone.
wlr_box zone_hint_box(const wlr_box &frame, drop_zone zone);

// Where a floating window goes that is dropped at an edge of the screen; SNAP_T and SNAP_B are top and
// bottom.
enum snap_zone : unsigned char {
    SNAP_NONE,
    SNAP_LEFT,
    SNAP_RIGHT,
    SNAP_TOP,
    SNAP_BOTTOM,
    SNAP_TL,
    SNAP_TR,
    SNAP_BL,
    SNAP_BR,
};

// `out` is the landing box; untouched for SNAP_NONE.
snap_zone snap_zone_for(const wlr_box &usable, double cx, double cy, wlr_box &out);

// The resize borders of a floating window: the outermost pixels of its content at the left, the right and the
// bottom. A mask of wlr_edges, 0 elsewhere.
uint32_t resize_edges_in(const wlr_box &box, double lx, double ly);

// A box some of whose edges follow the border point; it does not get smaller than the least size, and the
// opposite edges stay.
wlr_box resized(const wlr_box &box, uint32_t edges, double border_x, double border_y, int least_w,
                int least_h);
