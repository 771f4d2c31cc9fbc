// Keeps an X11 client's lies from ending the session.
#pragma once

#include "../wlr.hpp"

// Any X11 client may send events under the X server's name. The library takes them for true, and aborts where
// they don't fit what it knows. From here on it gets only those that clients have reason to send. Once for
// each start of the X server, when its window manager's connection is there.
void ignore_forged_events(wlr_xwayland *xwayland);
