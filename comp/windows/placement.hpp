// Computes where windows go, as arithmetic on boxes in layout coordinates.
#pragma once

#include "../wlr.hpp"
#include "toplevel.hpp"

// Returns the content box that centres a window of this size in the area, its title bar included. A window
// too large for the area sticks to the area's top left corner, below its own title bar.
wlr_box center_in(const wlr_box &area, int w, int h, int titlebar);

// Returns the content box moved as little as possible so that the title bar above it lies in the area. Of a
// bar that is too wide, the left end does.
wlr_box with_bar_in(const wlr_box &area, const wlr_box &box, int titlebar);

// Returns the box for a window that has no floating geometry of its own: 6/10 of the area, within 480 to 1200
// by 320 to 850, centred. An area without a width or height counts as one of 1280 by 720.
wlr_box float_box_in(const wlr_box &area, int titlebar);

// Returns the box of this size at a corner of the area, with a margin to both sides, or in the middle of the
// area. It ignores title bars. PLACE_NONE counts as the top left corner.
wlr_box place_in(const wlr_box &area, int w, int h, vantore_place place);

// Whether a window of this size would hide the whole screen, ignoring its position. False for a screen
// without a width.
bool fills(const wlr_box &size, const wlr_box &screen);

// Unlike wlr_box_equal, this tells empty boxes apart.
bool same_box(const wlr_box &a, const wlr_box &b);

// Whether the rectangles share at least one pixel.
bool boxes_overlap(const wlr_box &a, const wlr_box &b);

// The left and top edges belong to the box. The right and bottom edges do not.
bool box_contains(const wlr_box &box, double x, double y);
