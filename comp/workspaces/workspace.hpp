// One of exactly nine workspaces. Each window belongs to a workspace. An output shows at most one workspace,
// and a workspace is shown on at most one output.
#pragma once

#include "../fwd.hpp"
#include "../layout.hpp"
#include "../records.hpp"

#include <array>

struct vantore_workspace {
    list_link link; // server->workspaces
    vantore_server *server = nullptr;
    int num = 0; // 1 to 9
    std::array<char, 64> name{};
    vantore_layout layout = VANTORE_LAYOUT_FLOATING;
    vantore_tile_mode tile_mode = TM_MASTER;
    double master_ratio = 0; // the master tile's share of the width
    std::array<char, 64> pref_output{}; // where it was last shown; empty for none
    // Enabled exactly when output is set, or while the workspace slides away. At 0, 0 except in a slide.
    wlr_scene_tree *tree = nullptr;
    vantore_output *output = nullptr; // output->current_ws points back
    list_head toplevels; // vantore_toplevel.ws_link, in tile order
};

// Makes workspaces 1 to 9. Returns false when the scene has no memory for them.
bool workspaces_create(vantore_server &server);
void workspaces_destroy(vantore_server &server);

// Applies the configuration to the workspaces: names, homes, layouts and the master's share. The caller
// arranges them.
void config_apply_workspaces(vantore_server &server);

// Returns null when the number is not 1 to 9.
vantore_workspace *workspace_by_num(vantore_server &server, long num);

// Returns a workspace that no output shows and that waits for none, except `exclude`: the one that was last
// shown on this output, else the lowest number. Null when there is none.
vantore_workspace *pick_workspace_for_output(vantore_server &server, const wlr_output *output,
                                             const vantore_workspace *exclude);

// Links the workspace and the output and remembers the output's name as the workspace's home.
void ws_link(vantore_workspace &ws, vantore_output &o);
// Links them in the same way. The workspace's fullscreen windows then fill the output, and maximized ones its
// usable box if the output that they filled has gone.
void ws_bind(vantore_workspace &ws, vantore_output &o);

// Shows the windows of workspaces that are on an output and hides the others. A slide between two workspaces
// ends at once.
void show_bound_workspaces(vantore_server &server);
// Calls show_bound_workspaces, and brings back fullscreen windows that were minimized.
void refresh_workspace_visibility(vantore_server &server);

// Returns the output that shows the window's workspace, or null.
vantore_output *output_showing(const vantore_toplevel &t);

bool toplevel_visible(const vantore_toplevel &t);

// Moves the window to the end of the workspace's tile order. Does nothing for null or the window's own
// workspace. The caller arranges both workspaces, and settles the window if it may be fullscreen.
void toplevel_set_workspace(vantore_toplevel &t, vantore_workspace *ws);
