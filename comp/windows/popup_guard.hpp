// Keeps a client's mistake from ending the session.
#pragma once

#include "../wlr.hpp"

// The library asserts that a popup has had its first commit when a client repositions it. From here on an
// earlier request to do so is passed over; all other requests go where they went before.
void ignore_early_reposition(wlr_xdg_popup *popup);
