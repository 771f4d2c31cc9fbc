// Handles what clients ask of the seat: selections and drags.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

void seat_request_set_selection(vantore_server &server, wlr_seat_request_set_selection_event *event);
void seat_request_set_primary_selection(vantore_server &server,
                                        wlr_seat_request_set_primary_selection_event *event);
// A drag needs the serial of a held button. Any other drag is refused, and its source is destroyed.
void seat_request_start_drag(vantore_server &server, wlr_seat_request_start_drag_event *event);
void seat_start_drag(vantore_server &server, wlr_drag *drag);
// Moves the dragged icon to the cursor. Does nothing without an icon.
void drag_icon_follow_cursor(vantore_server &server);
