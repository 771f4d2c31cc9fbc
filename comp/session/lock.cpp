#include "lock.hpp"

#include "../input/modes.hpp"
#include "../server.hpp"

// The modes end first: during the lock no release would reach a drag.
void session_lock_begin(vantore_server &server)
{
    end_modes(server);
    server.locked = true;
}
