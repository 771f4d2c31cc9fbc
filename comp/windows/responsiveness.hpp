// Windows whose client stops answering, and their recovery.
#pragma once

#include "../fwd.hpp"

// Handles the ping time-out. If the ping went with a request to close this window, the title says from now on
// that the window does not respond.
void tl_handle_ping_timeout(vantore_toplevel &t);

// Call this at each commit, which proves that the client is alive. All windows of the client respond again.
void tl_note_sign_of_life(const vantore_toplevel &t);
