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
// Returns false for the release of a button that was pressed before the overview was drawn.
bool overview_release(vantore_server &server);
