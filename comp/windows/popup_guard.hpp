// Keeps a client's mistake from ending the session.
#pragma once

#include "../wlr.hpp"

// The library asserts that a popup has had its first commit when a client repositions it, and loses track of
// a popup that is grabbed twice. After this call, an early repositioning is ignored, and a second grab ends
// the client with the protocol's error. All other requests reach the library as before.
void guard_popup_requests(wlr_xdg_popup *popup);
