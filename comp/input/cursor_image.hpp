// The image of the cursor: a name of the theme, or a surface of the client under the pointer. What is shown
// is remembered, so that it can be shown again.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// At most 47 characters of the name count.
void set_named_cursor(vantore_server &server, const char *name);

// A null surface hides the cursor. The hotspot is in surface coordinates.
void set_surface_cursor(vantore_server &server, wlr_surface *surface, int32_t hotspot_x, int32_t hotspot_y);

// Requests of clients: only that of the client under the pointer counts.
void seat_request_cursor(vantore_server &server, wlr_seat_pointer_request_set_cursor_event *event);
void seat_request_set_cursor_shape(vantore_server &server,
                                   wlr_cursor_shape_manager_v1_request_set_shape_event *event);
