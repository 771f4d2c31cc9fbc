// What X11 clients ask of their windows, and tell of them.
#pragma once

#include "../fwd.hpp"

// From now to the end of the record.
void xwl_listen_to_requests(vantore_toplevel &t);

// A fullscreen window can be seen, or a window that is not managed fills its output: a game owns the screen,
// whoever has the keyboard.
bool any_screen_owner(vantore_server &server);
