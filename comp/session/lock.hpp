// The state of a locked session.
#pragma once

#include "../fwd.hpp"

// Locks the session: what the user was in the middle of ends where it is, and from then on nothing except the
// lock screen may be seen or reached.
void session_lock_begin(vantore_server &server);
