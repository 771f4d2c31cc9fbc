// Keeps a client's mistake from ending the session.
#pragma once

#include "../wlr.hpp"

// The library asserts that a popup has had its first commit when a client repositions it. It also loses track
// of a popup that a client grabs twice. After this call, a reposition request before the first commit is
// ignored, and a second grab ends the client with the protocol's error. All other requests reach the library.
void guard_popup_requests(wlr_xdg_popup *popup);
