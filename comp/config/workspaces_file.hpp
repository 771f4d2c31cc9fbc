// workspaces.conf: names, outputs and layouts of the workspaces.
#pragma once

// Fills g_ws_cfg on top of what is there. Bad lines are passed over.
void config_parse_workspaces(const char *path);
