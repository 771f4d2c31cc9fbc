// Computes where a dragged window would land, and how large a resized one becomes. Boxes and points are in
// layout coordinates.
#pragma once

#include "../wlr.hpp"

// Where a dragged tile lands on another tile.
enum drop_zone : unsigned char { DROP_BEFORE, DROP_AFTER, DROP_STACK, DROP_SWAP };

// `frame` is the whole tile, its bar included.
drop_zone zone_at(const wlr_box &frame, double x, double y);
// Returns the part of the frame to highlight for a zone.
wlr_box zone_hint_box(const wlr_box &frame, drop_zone zone);

// Where a floating window lands when it is dropped at an edge of the screen. TL, TR, BL and BR are the
// corners: T for top, B for bottom, L for left, R for right.
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

// Sets `out` to the landing box, except for SNAP_NONE.
snap_zone snap_zone_for(const wlr_box &usable, double cx, double cy, wlr_box &out);

// Returns the resize border of a window at the point, as a mask of wlr_edges, or 0 elsewhere. The borders are
// the outermost pixels of its content at the left, the right and the bottom; `border` says how many.
uint32_t resize_edges_in(const wlr_box &box, int border, double lx, double ly);

// Returns the box with `edges` moved to the border point. The opposite edges stay, and the box does not
// become smaller than the least size.
wlr_box resized(const wlr_box &box, uint32_t edges, double border_x, double border_y, int least_w,
                int least_h);
