// Finding the pointer on a large screen: a shake makes it three times as large for a moment.
//
// It grows, holds, and shrinks in steps; each step is the cursor theme loaded in another size.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// The pointer has been moved by its device.
void cursor_shake_feed(vantore_server &server);

// One step of the animation, at a time of mono_ms. False when it is over.
bool cursor_locate_anim(vantore_server &server, int64_t now);

// The theme in the size that the cursor has now; the usual one where a step could not be loaded.
wlr_xcursor_manager *cursor_locate_mgr(const vantore_server &server);

// Forgets the loaded sizes: the next shake loads them anew, with the theme and size of the configuration by
// then.
void cursor_locate_drop_steps(vantore_server &server);
