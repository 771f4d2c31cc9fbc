// Looks at X11 events before the library handles them.
#pragma once

#include "../wlr.hpp"

// What a window asks to be when it is mapped.
struct xwl_wish {
    bool fullscreen = false, modal = false;
};

// Must run once for each start of the X server, when its window manager's connection exists. From then on,
// events that a client forged in the X server's name do not reach the library, except the kinds that clients
// have a reason to send. The library would believe a forged event and abort when it contradicts what the
// library knows.
void xwl_watch_events(wlr_xwayland *xwayland);

// Returns and forgets what the window's _NET_WM_STATE said just before the map. The library replaces that
// property without reading it.
xwl_wish xwl_take_wish(xcb_window_t window);

// Whether the window's client says that it answers pings (_NET_WM_PING).
bool xwl_supports_ping(const wlr_xwayland_surface &xwl);
