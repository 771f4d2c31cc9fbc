// Pointer buttons, the wheel, and the end of a group of pointer events.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

void server_cursor_button(vantore_server &server, wlr_pointer_button_event *event);
void server_cursor_axis(vantore_server &server, wlr_pointer_axis_event *event);
void server_cursor_frame(vantore_server &server);
