// Bringing a running session in line with the configuration files.
#pragma once

#include "fwd.hpp"

// Can't fail: what can't be used is counted, and the count shown to the user. What only a new session takes
// up (globals that are offered, what windows got when they mapped) stays as it is.
void config_reload(vantore_server &server);

// Reloads on SIGHUP from now on, and no longer.
void config_reload_on_hangup(vantore_server &server);
void config_ignore_hangup(vantore_server &server);
