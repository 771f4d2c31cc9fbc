// Pointer motion: where the cursor goes, and which client hears of it.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

void server_cursor_motion(vantore_server &server, wlr_pointer_motion_event *event);
void server_cursor_motion_absolute(vantore_server &server, wlr_pointer_motion_absolute_event *event);

// Determines again what the cursor is over, and tells clients. `time_msec` is in milliseconds of the event
// clock.
void process_cursor_motion(vantore_server &server, uint32_t time_msec);
// The same for a pointer that has not moved. Focus that follows the mouse gives no window the keyboard then.
// Not for use during a drag; see resting_pointer.hpp.
void process_resting_pointer(vantore_server &server);

// Takes the pointer from the client under it and ends the constraint in force.
void clear_pointer_focus(vantore_server &server);

// Removes the highlight from the title bar that was under the pointer.
void pointer_leaves_decorations(vantore_server &server);
void hover_window_leaves(vantore_server &server, const vantore_toplevel &t);

// Whether a mapped window hangs above the fullscreen windows.
bool overlay_lift_active(const vantore_server &server);
