// Locks the session.
#pragma once

#include "../fwd.hpp"

// Ends drags and other modes and leaves windows where they are. From then on, nothing except the lock screen
// may be seen or reached.
void session_lock_begin(vantore_server &server);
