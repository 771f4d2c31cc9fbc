// Windows whose client stops answering, and their recovery.
#pragma once

#include "../fwd.hpp"

// Handles the ping time-out. From now on, the title says that the window does not respond.
void tl_handle_ping_timeout(vantore_toplevel &t);

// Call this at each commit, which proves that the client is alive.
void tl_note_sign_of_life(vantore_toplevel &t);
