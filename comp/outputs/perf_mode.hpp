// Keeps the rest of the desktop out of the way of a fullscreen window.
#pragma once

#include "../fwd.hpp"

// Called whenever a fullscreen window may have come, gone, been shown or been hidden, and when panels or the
// settings of blur have changed. Publishes whether there is one to be seen, by a file and an event, and hides
// the overlay of shortcuts when there is; panels blur what lies behind them when there is none.
void refresh_perf_mode(vantore_server &server);
// A new session has published nothing yet.
void perf_mode_reset();
