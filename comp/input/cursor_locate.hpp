// Helps the user find the pointer on a large screen: a shake makes it three times as large for a moment.
//
// The pointer grows, stays large, and shrinks in steps. Each step is the cursor theme loaded in another size.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Call this after the device moved the pointer.
void cursor_shake_feed(vantore_server &server);

// Advances the animation to a time of mono_ms. Returns false when it is over.
bool cursor_locate_anim(vantore_server &server, int64_t now);

// Returns the theme in the size that the cursor has now, or in the usual size if that step could not be
// loaded.
wlr_xcursor_manager *cursor_locate_mgr(const vantore_server &server);

// Destroys the loaded sizes. The next shake loads them anew, with the theme and size that are configured
// then.
void cursor_locate_drop_steps(vantore_server &server);
