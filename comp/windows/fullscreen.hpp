// Fullscreen windows: how they come to cover their output, what they stand above, and that those behind
// others keep drawing.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Gives the window all of an output, panels included, or puts it back where it was. Without an output nothing
// but saved_geo changes. The surface must be initialized.
void toplevel_set_fullscreen(vantore_toplevel &t, bool fs);

// Puts a fullscreen window back to the corner of its workspace's output and into the tree where it belongs.
// Other windows are left alone.
void enforce_fullscreen_pos(vantore_toplevel &t);

// A window has come to its workspace, by being mapped or moved: a fullscreen one covers the output that shows
// the workspace, or is hidden where none does, and other programs hear of it. Others are left alone.
void settle_fullscreen(vantore_toplevel &t);

// The workspace has come to an output, or its output has changed its size or place.
void fit_fullscreen_windows(vantore_workspace &ws);

// After the focus has gone to a window: of the fullscreen windows on its output only that one stays above the
// panels. A window of the overlay layer disturbs nothing.
void refresh_fullscreen_stacking(vantore_server &server, vantore_toplevel &focused);

// At least as large as the output that shows the window's workspace; false without one.
bool fills_output(const vantore_toplevel &t, const wlr_box &size);
// The same for the window itself, formally fullscreen or not.
bool covers_output(const vantore_toplevel &t);
// The surface that has the keyboard is a window that fills its output: a game, a film.
bool focused_is_fullscreen(vantore_server &server);
// The first one that can be seen, or null.
const vantore_toplevel *shown_fullscreen_window(vantore_server &server);

// Sends frame callbacks to fullscreen windows that others may cover, every 16 ms for as long as there are
// any: the scene sends none to what nobody sees, and a game would stall.
void bg_frame_timer_kick(vantore_server &server);
// Before the event loop ends.
void bg_frame_timer_drop();
