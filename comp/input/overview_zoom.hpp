// The overview's animation: pictures move from the windows to the tiles and back.
#pragma once

#include "../fwd.hpp"

#include <cstdint>

// Begin to open an overview that was just drawn, and to close an active one, which then takes no input any
// more.
void overview_zoom_in(vantore_server &server);
void overview_zoom_out(vantore_server &server);

// Shows the tiles in their places at once if the overview is opening.
void overview_zoom_finish(vantore_server &server);

// Shows the pictures where they are at a time of mono_ms, and ends an overview that has closed. Returns
// whether it needs another tick.
bool overview_zoom_advance(vantore_server &server, int64_t now);
