#include "lock.hpp"

#include "../input/modes.hpp"
#include "../presentation/slide.hpp"
#include "../server.hpp"

// The modes end first, because a drag would never get its release during the lock.
void session_lock_begin(vantore_server &server)
{
    end_modes(server);
    slide_end(server);
    server.locked = true;
}
