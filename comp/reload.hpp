// Brings a running session in line with the configuration files.
#pragma once

#include "fwd.hpp"

// Never fails: lines that can't be used are counted, and a notification tells the user their number. The
// globals that a session offers stay as they are. Windows that are already mapped take over only the shadow
// and corner options of changed rules.
void config_reload(vantore_server &server);

// Makes SIGHUP reload the configuration, and ends that again.
void config_reload_on_hangup(vantore_server &server);
void config_ignore_hangup(vantore_server &server);
