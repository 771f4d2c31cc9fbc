// Pointer motion: where the cursor goes, and which client hears of it.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

void server_cursor_motion(vantore_server &server, wlr_pointer_motion_event *event);
void server_cursor_motion_absolute(vantore_server &server, wlr_pointer_motion_absolute_event *event);

// Decides anew what the cursor is over. Everything that moves the cursor, or changes what lies under it,
// ends here. `time_msec` is what clients are told, in the event clock's milliseconds.
void process_cursor_motion(vantore_server &server, uint32_t time_msec);

// No title bar is under the pointer any more.
void pointer_leaves_decorations(vantore_server &server);
void hover_window_leaves(vantore_server &server, const vantore_toplevel &t);

// A window shows above fullscreen ones.
bool overlay_lift_active(const vantore_server &server);
