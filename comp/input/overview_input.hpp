// The keyboard and the pointer in the overview. Call all of these only while it is active.
#pragma once

#include "../fwd.hpp"

#include <cstdint>
#include <xkbcommon/xkbcommon.h>

void overview_key(vantore_server &server, xkb_keysym_t sym);

// Follows the pointer. Returns the name of the cursor's image.
const char *overview_motion(vantore_server &server);
// Selects the tile under the pointer, or none.
void overview_hover(vantore_server &server);

// `button` is an evdev code.
void overview_press(vantore_server &server, uint32_t button);
// Returns false for a release that means nothing to the overview: its press came before the overview was
// drawn, or was the one on a badge.
bool overview_release(vantore_server &server);
