// Handles what X11 clients request for their windows and report about them.
#pragma once

#include "../fwd.hpp"

// Listens until the record is deleted.
void xwl_listen_to_requests(vantore_toplevel &t);

// Whether a fullscreen window can be seen or an unmanaged window fills its output. A game then owns the
// screen, whoever has the keyboard.
bool any_screen_owner(vantore_server &server);
