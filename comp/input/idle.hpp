// The user's activity, for everybody who waits for idleness.
#pragma once

#include "../fwd.hpp"

// Called first by the handlers of what the user does.
void idle_poke(vantore_server &server);
