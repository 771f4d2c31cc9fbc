// The life of an X11 window that the compositor manages.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Makes the record of a new X11 window, with nothing in the scene yet.
vantore_toplevel *server_new_xwl_toplevel(vantore_server &server, wlr_xwayland_surface *xwl);

// Call this when the surface has just been assigned to its window. The X server announces the assignment over
// one socket and draws over another, so the surface may have been drawn before. The library maps a surface
// only when it is drawn afterwards.
void xwl_map_if_drawn(const wlr_xwayland_surface &xwl);

// Call this for a window that was unmanaged before. It may already have a surface, and the surface may be
// mapped, so this makes up for the signals that the new record missed.
void xwl_toplevel_take_over(vantore_toplevel &t);
