// Keeps a client's mistake from ending the session.
#pragma once

#include "../wlr.hpp"

// The library takes it for granted that a popup still exists when a client puts it under a layer surface.
// From here on such a request with a popup that was dismissed is passed over; all other requests go where
// they went before.
void ignore_dismissed_popups(wlr_layer_surface_v1 *layer_surface);
