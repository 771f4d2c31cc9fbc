// Dragging a window with the pointer: moving and resizing, from the press to the release.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"
#include "cursor_mode.hpp"

// Starts a drag of a mapped window at the pointer. `edges` is a mask of wlr_edges, for a resize. A snapped or
// maximized window that is moved returns to its size, under the pointer.
void begin_interactive(vantore_toplevel &t, vantore_cursor_mode mode, uint32_t edges);

// Forgets the drag; nothing of it stays on the screen. The window hangs where it was carried.
void reset_cursor_mode(vantore_server &server);
// Ends the drag, if there is one, and leaves the window where it is, among the others of its workspace.
void drag_end(vantore_server &server);
void drag_window_leaves(vantore_server &server, const vantore_toplevel &t);

// The pointer has moved while a window is dragged.
void process_cursor_move(vantore_server &server);
void process_cursor_resize(vantore_server &server);

// The window takes a box of the screen, its title bar included, and looks as if others adjoined it.
void snap_apply_box(vantore_toplevel &t, const wlr_box &box);

// As snap_apply_box, out of the tiles, and remembers where the window came from.
void snap_window(vantore_toplevel &t, const wlr_box &box);

// Keeps the edges still that are not dragged, whatever size the client has chosen. After each commit.
void hold_resize_anchor(vantore_toplevel &t);
