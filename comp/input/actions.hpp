// What key bindings do.
#pragma once

#include "../fwd.hpp"

#include <cstdint>
#include <xkbcommon/xkbcommon.h>

// Runs the binding of a pressed key, unless whoever has the keyboard may keep the key. `mods` is the
// keyboard's whole mask, and `sym` is what the key means without Shift. Returns true when no client may have
// the key.
bool handle_keybinding(vantore_server &server, uint32_t mods, xkb_keysym_t sym);

// Sets the step in a vnt_direction, or 0, 0 for any other number.
void dir_to_delta(int dir, int &dx, int &dy);
