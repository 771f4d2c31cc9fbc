// What clients ask of the seat: selections and drags.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

void seat_request_set_selection(vantore_server &server, wlr_seat_request_set_selection_event *event);
void seat_request_set_primary_selection(vantore_server &server,
                                        wlr_seat_request_set_primary_selection_event *event);
// A drag needs the serial of a held button; any other is refused and its source destroyed.
void seat_request_start_drag(vantore_server &server, wlr_seat_request_start_drag_event *event);
void seat_start_drag(vantore_server &server, wlr_drag *drag);
// Does nothing while no icon is dragged.
void drag_icon_follow_cursor(vantore_server &server);
