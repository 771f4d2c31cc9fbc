// Entering and leaving a window's states, and the box in which a window floats by default.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Maximizes the window into the usable box of the output under the cursor, which need not be the output of
// its workspace, or returns it to saved_geo. Without an output under the cursor, only saved_geo changes. The
// surface must be initialized. A window without a real size yet will return to the default box. Does nothing
// to fullscreen windows.
void toplevel_toggle_maximize(vantore_toplevel &t);

// Hides the window until it is focused, and focuses the most recently raised visible window. If no
// other window is visible, nobody has the keyboard afterwards.
void toplevel_minimize(vantore_toplevel &t);

// Makes the window fill a usable box, its title bar included.
void toplevel_fill(vantore_toplevel &t, const wlr_box &usable);

// Hangs the window where it belongs after a drag, and raises it there.
void restore_toplevel_parent(vantore_toplevel &t);

// Returns the default floating box on the output of the window's workspace. If the workspace has no output,
// the output under the cursor counts. The box is the content's, in layout coordinates.
wlr_box default_float_box(const vantore_toplevel &t);
// Remembers this size and the window's present position as its floating box.
void remember_as_floating(vantore_toplevel &t, int w, int h);
// Returns the box that the window covers now. A window that has not shown a real size yet gets the default
// box.
wlr_box box_to_return_to(const vantore_toplevel &t);
