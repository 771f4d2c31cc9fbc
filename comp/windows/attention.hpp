// Windows that ask for attention. Asking never gives them the focus.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Marks the window urgent until it is focused, and tells IPC subscribers.
void toplevel_set_urgent(vantore_toplevel &t);
// Does the same, except for a window that has the keyboard.
void toplevel_mark_urgent(vantore_toplevel &t);

// Handles the activation global's request.
void server_xdg_activation_activate(vantore_server &server,
                                    wlr_xdg_activation_v1_request_activate_event *event);
