// The virtual output: one at most, without a monitor, for streaming and remote views.
#pragma once

#include "../fwd.hpp"

// Replaces the virtual output by one of this size in pixels, at 60 Hz. Sizes outside 320 to 7680 by 240 to
// 4320, or a session without a headless backend, change nothing.
void virtual_output_create(vantore_server &server, int width, int height);
// Does nothing without one.
void virtual_output_destroy(vantore_server &server);
