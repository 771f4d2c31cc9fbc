// The image of the cursor: a name of the theme, or a surface of the client under the pointer. The compositor
// remembers what is shown, so that it can show it again.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Uses at most 47 characters of the name.
void set_named_cursor(vantore_server &server, const char *name);

// Returns the size in which to load a theme. 0 and less give the usual size, and the result is at most 1024
// pixels.
uint32_t cursor_size_for(long wish);
// Loads the configured theme in this size and in the scales of all outputs. The caller destroys the manager.
// Returns null without memory.
wlr_xcursor_manager *load_cursor_theme(vantore_server &server, uint32_t size);

// Shows the remembered image again, in the size that the cursor has now.
void cursor_reassert(vantore_server &server);

// Loads the configured theme and size if they changed since the last call. The first call of a session always
// loads them. After loading, the cursor shows the default image, whatever it showed before.
void cursor_apply(vantore_server &server);

// Calls set_named_cursor unless that image is shown already. Loading an image costs a thousand times more
// than moving it, and pointer motion asks for it at every step over the desktop.
void show_named_cursor(vantore_server &server, const char *name);

// Returns the name of the image for a resize border. `edges` is a mask of wlr_edges.
const char *resize_cursor_name(uint32_t edges);

// Handle requests of clients. Only the client under the pointer may change the image.
void seat_request_cursor(vantore_server &server, wlr_seat_pointer_request_set_cursor_event *event);
void seat_request_set_cursor_shape(vantore_server &server,
                                   wlr_cursor_shape_manager_v1_request_set_shape_event *event);
