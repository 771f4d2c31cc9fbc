// Dragging a window with the pointer: moving and resizing, from the press to the release.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"
#include "cursor_mode.hpp"

// Starts a drag of a mapped window at the pointer. `edges` is a mask of wlr_edges for a resize. A snapped or
// maximized window that is moved returns to its earlier size, under the pointer.
void begin_interactive(vantore_toplevel &t, vantore_cursor_mode mode, uint32_t edges);

// The same for a drag that the window's client asked for while it held the pointer. The client hears that the
// pointer leaves, because it gets no more motion.
void begin_requested_drag(vantore_toplevel &t, vantore_cursor_mode mode, uint32_t edges);

// Forgets the drag and hides its hints. The window stays in the tree in which it was carried.
void reset_cursor_mode(vantore_server &server);
// Ends the drag, if there is one. The window stays where it is and returns to the windows of its workspace.
void drag_end(vantore_server &server);
// Puts a tile that was dragged back where the arrangement wants it. Does nothing to other windows.
void return_to_tile(const vantore_toplevel &t);
// A float that was carried to another output joins the workspace that is shown there. False where it has not
// been.
bool join_output_under_cursor(vantore_toplevel &t);
void drag_window_leaves(vantore_server &server, const vantore_toplevel &t);

// Call these when the pointer moved while a window is dragged.
void process_cursor_move(vantore_server &server);
void process_cursor_resize(vantore_server &server);

// Gives the window a box in layout coordinates, its title bar included, and tells the client that other
// windows adjoin it.
void snap_apply_box(vantore_toplevel &t, const wlr_box &box);

// Does the same as snap_apply_box, takes the window out of the tiles and remembers where it was.
void snap_window(vantore_toplevel &t, const wlr_box &box);

// Call this after each commit. While a window is resized, it keeps the edges still that are not dragged,
// whatever size the client chose.
void hold_resize_anchor(vantore_toplevel &t);
