// What key bindings do.
#pragma once

#include "../fwd.hpp"

#include <cstdint>
#include <xkbcommon/xkbcommon.h>

// Runs what a pressed key is bound to, if anything, and if whoever has the keyboard lets it. `mods` is the
// keyboard's whole mask, `sym` what the key means without Shift. True when no client may have the key.
bool handle_keybinding(vantore_server &server, uint32_t mods, xkb_keysym_t sym);

// One step in a vnt_direction; none for any other number.
void dir_to_delta(int dir, int &dx, int &dy);
