// Entering and leaving the states of a window, and the box that a window floats in by default.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Maximizes into the usable box of the output under the cursor, which need not be the output of the
// window's workspace, or returns to saved_geo. Without an output under the cursor only saved_geo changes.
// The surface must be initialized; a window that is not mapped yet has no size to return to and takes the
// default box. Fullscreen windows stay as they are.
void toplevel_toggle_maximize(vantore_toplevel &t);

// Hides the window until it is focused; the next visible window gets the focus.
void toplevel_minimize(vantore_toplevel &t);

// Gives the window all of a usable box, its title bar included.
void toplevel_fill(vantore_toplevel &t, const wlr_box &usable);

// Hangs the window where it belongs, after a drag, and raises it there.
void restore_toplevel_parent(vantore_toplevel &t);

// The default floating box on the output of the window's workspace or, without one, on the output under the
// cursor. Layout coordinates of the content.
wlr_box default_float_box(const vantore_toplevel &t);
// The window floats where it is now, and with this size, when it comes to float again.
void remember_as_floating(vantore_toplevel &t, int w, int h);
// Where the window lies; the default box for one that has not shown a real size yet, which has nothing worth
// coming back to.
wlr_box box_to_return_to(const vantore_toplevel &t);
