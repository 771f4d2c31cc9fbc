// The life of an X11 window that the compositor manages.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// The record of a new X11 window, with nothing in the scene yet.
vantore_toplevel *server_new_xwl_toplevel(vantore_server &server, wlr_xwayland_surface *xwl);

// For a surface that has just been given to its window. The X server tells of it and draws into it over two
// sockets: what is drawn may come first, and the library maps a surface only when it draws after that.
void xwl_map_if_drawn(const wlr_xwayland_surface &xwl);

// The steps that the window has behind it already, as one that was not managed: its surface is there, and
// maybe mapped.
void xwl_toplevel_take_over(vantore_toplevel &t);
