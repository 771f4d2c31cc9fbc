// The image of the cursor: a name of the theme, or a surface of the client under the pointer. What is shown
// is remembered, so that it can be shown again.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// At most 47 characters of the name count.
void set_named_cursor(vantore_server &server, const char *name);

// The size that a theme is loaded in when so much is wished for: the usual one for 0 and less, and no more
// than 1024 pixels.
uint32_t cursor_size_for(long wish);
// The configured theme in this size and in the scales of all outputs. The caller destroys it. Null without
// memory.
wlr_xcursor_manager *load_cursor_theme(vantore_server &server, uint32_t size);

// Shows what is remembered once more, in the size that the cursor has now.
void cursor_reassert(vantore_server &server);

// Brings theme and size to what the configuration says, where they changed since the last call. The first
// call of a session always loads. Whatever the cursor showed, it shows the default image then.
void cursor_apply(vantore_server &server);

// set_named_cursor, unless that is what is shown: loading an image costs a thousand times more than moving
// it, and pointer motion asks for it at every step over the desktop.
void show_named_cursor(vantore_server &server, const char *name);

// The image over a border that resizes; edges are of wlr_edges.
const char *resize_cursor_name(uint32_t edges);

// Requests of clients: only that of the client under the pointer counts.
void seat_request_cursor(vantore_server &server, wlr_seat_pointer_request_set_cursor_event *event);
void seat_request_set_cursor_shape(vantore_server &server,
                                   wlr_cursor_shape_manager_v1_request_set_shape_event *event);
