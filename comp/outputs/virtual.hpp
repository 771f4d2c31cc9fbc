// The virtual output, which has no monitor and serves streaming and remote views. There is at most one.
#pragma once

#include "../fwd.hpp"

// Replaces the virtual output by one of this size in pixels, at 60 Hz. It changes nothing if the size lies
// outside 320 to 7680 by 240 to 4320, or if the session has no headless backend.
void virtual_output_create(vantore_server &server, int width, int height);
// Does nothing if there is no virtual output.
void virtual_output_destroy(vantore_server &server);
