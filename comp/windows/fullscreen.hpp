// Fullscreen windows: how they cover their output, how they are stacked, and how covered ones keep drawing.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Gives the window a whole output, panels included, or puts it back where it was. When no output can be
// found, entering fullscreen changes only saved_geo. The surface must be initialized.
void toplevel_set_fullscreen(vantore_toplevel &t, bool fs);

// Moves a fullscreen window to the corner of its workspace's output and hangs it in the tree where it
// belongs. Does nothing to other windows.
void enforce_fullscreen_pos(vantore_toplevel &t);

// Call this after a window was mapped or moved to another workspace. A fullscreen window then covers the
// output that shows the workspace. If no output shows it, the window is hidden. Other programs are told. Does
// nothing to other windows.
void settle_fullscreen(vantore_toplevel &t);

// Call this after the workspace came to an output, or after its output changed its size or place.
void fit_fullscreen_windows(vantore_workspace &ws);

// Call this after the focus went to a window. Of the fullscreen windows on its output, only that one stays
// above the panels. A focused window of the overlay layer changes nothing.
void refresh_fullscreen_stacking(vantore_server &server, vantore_toplevel &focused);

// Whether this size is at least as large as the output that shows the window's workspace. False when no
// output shows it.
bool fills_output(const vantore_toplevel &t, const wlr_box &size);
// The same for the window's own size, whether or not it is in the fullscreen state.
bool covers_output(const vantore_toplevel &t);
// Whether the keyboard is on a fullscreen window, or on one that fills its output like a game or a film.
bool focused_is_fullscreen(vantore_server &server);
// Returns the first fullscreen window that can be seen, or null.
const vantore_toplevel *shown_fullscreen_window(vantore_server &server);

// Sends frame callbacks to fullscreen windows that others may cover, every 16 ms for as long as there are
// any. The scene sends no callbacks to a covered window, and a game would stall without them.
void bg_frame_timer_kick(vantore_server &server);
// Must run before the event loop ends.
void bg_frame_timer_drop();
