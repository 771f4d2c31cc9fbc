// X11 events, before the library handles them.
#pragma once

#include "../wlr.hpp"

// What a window asks to be when it is mapped.
struct xwl_wish {
    bool fullscreen = false, modal = false;
};

// Once for each start of the X server, when its window manager's connection is there. From here on the
// library gets no event that a client has sent under the X server's name, but for those that clients have
// reason to send: it takes them for true, and aborts where they don't fit what it knows.
void xwl_watch_events(wlr_xwayland *xwayland);

// What the window's _NET_WM_STATE said when it was about to be mapped; the library replaces the property
// unread. Forgets it.
xwl_wish xwl_take_wish(xcb_window_t window);
