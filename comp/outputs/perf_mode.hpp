// Keeps the rest of the desktop out of the way of a fullscreen window.
#pragma once

#include "../fwd.hpp"

// Call it when a fullscreen window may have come, gone, been shown or been hidden, and when panels or the
// settings of blur have changed. It publishes by a file and an event whether a fullscreen window can be seen.
// When one appears, it hides the overlay of shortcuts. Panels blur what lies behind them only while there is
// none.
void refresh_perf_mode(vantore_server &server);
// Forgets what was published, because a new session has published nothing yet.
void perf_mode_reset();
