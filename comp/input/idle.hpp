// Reports the user's activity to everybody who waits for idleness.
#pragma once

#include "../fwd.hpp"

// Every handler of user input calls this first.
void idle_poke(vantore_server &server);
