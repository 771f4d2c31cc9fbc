// A second picture of a window's content, which follows what the client draws.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Shows the surface's latest buffer, or nothing if it has none. Waits for the point in time at which the
// client has drawn the buffer, where the client says so.
void scene_buffer_show_surface(wlr_scene_buffer *node, wlr_surface &surface);

// Returns the part of the buffer that shows the window geometry, in pixels of the buffer as the client sent
// it. `geometry` and the surface's size are in surface coordinates, `source` is the part of the buffer that
// the surface shows.
wlr_fbox live_picture_source(const wlr_box &geometry, int surface_width, int surface_height,
                             const wlr_fbox &source, wl_output_transform transform);

// Makes a node that shows the window geometry of the window's main surface. It keeps no buffer that the
// client has replaced, takes no input, and becomes empty when the window is unmapped. The parent tree owns
// it. The caller gives it a size, which stays the same when the client's window changes its shape. Returns
// null if the window has drawn nothing or there is no memory.
wlr_scene_buffer *live_picture_create(vantore_toplevel &t, wlr_scene_tree *parent);
