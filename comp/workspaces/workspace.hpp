// One of exactly nine workspaces. Windows belong to workspaces; an output shows at most one workspace, and
// a workspace is shown on at most one output.
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
    wlr_scene_tree *tree = nullptr; // enabled exactly when output is set
    vantore_output *output = nullptr; // output->current_ws points back
    list_head toplevels; // vantore_toplevel.ws_link, in tile order
};

// Makes workspaces 1 to 9; false when the scene can't hold them.
bool workspaces_create(vantore_server &server);
void workspaces_destroy(vantore_server &server);

// Gives the workspaces what the configuration says of them: names, homes, layouts and the master's share. The
// caller arranges them.
void config_apply_workspaces(vantore_server &server);

// Null when the number is not 1 to 9.
vantore_workspace *workspace_by_num(vantore_server &server, long num);

// A free workspace for an output: the one that was last shown there, else the lowest number. Null when all
// are on show.
vantore_workspace *pick_workspace_for_output(vantore_server &server, const wlr_output *output,
                                             const vantore_workspace *exclude);

// Links both sides and remembers the output's name as the workspace's home. Fullscreen windows of the
// workspace fill the output from then on.
void ws_bind(vantore_workspace &ws, vantore_output &o);

// Shows what belongs to a workspace on an output and hides the rest.
void refresh_workspace_visibility(vantore_server &server);

// The output on which the window's workspace is on show; null when there is none.
vantore_output *output_showing(const vantore_toplevel &t);

bool toplevel_visible(const vantore_toplevel &t);

// Null and the window's own workspace do nothing. The caller arranges both workspaces, and settles a window
// that may be fullscreen.
void toplevel_set_workspace(vantore_toplevel &t, vantore_workspace *ws);
