// Reads the whole configuration, at the start and again at each reload.
#pragma once

#include "../fwd.hpp"

// Writes the files that are missing, then brings the settings, the workspaces' lines and the key bindings to
// what the files say. Never fails: what can't be read has no effect. Bad lines are counted in
// g_config_errors.
void config_load(vantore_server &server);
