// Reads workspaces.conf, which has the names, outputs and layouts of the workspaces.
#pragma once

// Fills in g_ws_cfg on top of what it holds. Bad lines are skipped.
void config_parse_workspaces(const char *path);
