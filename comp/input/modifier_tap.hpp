// The window-manager modifier on its own: a tap opens the launcher, a hold shows the shortcuts overlay.
//
// A game keeps the modifier for itself: nothing of this while a window that fills its output has the
// keyboard.
//
// idle: neither flag of the server is set. armed: mod_tapped. shown: mod_tapped and shortcuts_shown.
#pragma once

#include "../fwd.hpp"

#include <xkbcommon/xkbcommon.h>

// Makes the hold timer, and takes it away.
void modifier_tap_start(vantore_server &server);
void modifier_tap_stop(vantore_server &server);

// Key events, by their base sym.
void modifier_tap_press(vantore_server &server, xkb_keysym_t sym);
void modifier_tap_release(vantore_server &server, xkb_keysym_t sym);

// Ends both tap and hold; tells subscribers when the overlay was up.
void shortcuts_force_hide(vantore_server &server);
