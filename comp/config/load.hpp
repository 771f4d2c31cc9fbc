// The whole configuration, read at the start and again at each reload.
#pragma once

#include "../fwd.hpp"

// Brings settings, workspaces' lines and key bindings to what the files say, after writing the files that are
// missing. Can't fail: what can't be read leaves its defaults. Bad lines are counted in g_config_errors.
void config_load(vantore_server &server);
