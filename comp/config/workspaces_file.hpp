// workspaces.conf: names, outputs and layouts of the workspaces.
#pragma once

#include "../fwd.hpp"

// Fills g_ws_cfg on top of what is there. Bad lines are passed over.
void config_parse_workspaces(const char *path);

// Carries g_ws_cfg and the default layout and ratio into the workspaces. The caller arranges them.
void config_apply_workspaces(vantore_server &server);
