// The window-manager modifier on its own: a tap opens the launcher, and a hold shows the shortcuts overlay.
//
// A game keeps the modifier for itself. Nothing happens while a window that fills its output has the
// keyboard.
//
// The modifier is idle while neither flag of vantore_tap is set, armed while only mod_tapped is set, and
// shown while shortcuts_shown is set as well.
#pragma once

#include "../fwd.hpp"

#include <xkbcommon/xkbcommon.h>

// Make and remove the hold timer.
void modifier_tap_start(vantore_server &server);
void modifier_tap_stop(vantore_server &server);

// Handle key events by their base keysym.
void modifier_tap_press(vantore_server &server, xkb_keysym_t sym);
void modifier_tap_release(vantore_server &server, xkb_keysym_t sym);

// Ends both tap and hold, and tells subscribers if the overlay was shown.
void shortcuts_force_hide(vantore_server &server);
