// Where windows go: arithmetic on boxes in layout coordinates, without a compositor.
#pragma once

#include "../wlr.hpp"
#include "toplevel.hpp"

// The content's position (the box's x and y) that centres a window of this geometry, title bar included, in
// the area. A window too large for the area sticks to its top left corner, below its title bar.
wlr_box center_in(const wlr_box &area, int w, int h, int titlebar);

// The box in which a window floats when it has no floating geometry of its own: 6/10 of the area, within
// 480 to 1200 by 320 to 850, centred. An area without a width or height counts as one of 1280 by 720.
wlr_box float_box_in(const wlr_box &area, int titlebar);

// The box of that size at a corner of the area, a margin away from both of its sides, or in its middle. Title
// bars do not count. PLACE_NONE counts as the top left corner.
wlr_box place_in(const wlr_box &area, int w, int h, vantore_place place);

// Whether a window of this size leaves nothing of the screen free, wherever it lies. A screen without a width
// is none.
bool fills(const wlr_box &size, const wlr_box &screen);

// Whether the rectangles share at least one pixel.
bool boxes_overlap(const wlr_box &a, const wlr_box &b);

// The left and top edges belong to the box, the right and bottom ones don't.
bool box_contains(const wlr_box &box, double x, double y);
