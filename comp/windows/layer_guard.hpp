// Keeps a client's mistake from ending the session.
#pragma once

#include "../wlr.hpp"

// The library assumes that a popup still exists when a client puts it under a layer surface. After this call,
// such a request is ignored when the popup was dismissed. All other requests reach the library as before.
void ignore_dismissed_popups(wlr_layer_surface_v1 *layer_surface);
