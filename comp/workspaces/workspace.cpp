#include "workspace.hpp"

#include "../config/settings.hpp"
#include "../outputs/absent.hpp"
#include "../outputs/output.hpp"
#include "../presentation/slide.hpp"
#include "../server.hpp"
#include "../text.hpp"
#include "../visibility.hpp"
#include "../windows/fullscreen.hpp"
#include "../windows/maximized.hpp"
#include "../windows/showing.hpp"
#include "../windows/toplevel.hpp"

#include <cstdio>

static constexpr int workspace_count = 9;

bool workspaces_create(vantore_server &server)
{
    for (int num = 1; num <= workspace_count; num++) {
        wlr_scene_tree *tree = wlr_scene_tree_create(server.toplevel_tree);
        if (tree == nullptr)
            return false;
        wlr_scene_node_set_enabled(&tree->node, false);
        auto *ws = new vantore_workspace{};
        ws->server = &server;
        ws->num = num;
        snprintf(ws->name.data(), ws->name.size(), "%d", num);
        ws->layout = g_default_layout;
        ws->master_ratio = g_default_master;
        ws->tree = tree;
        move_to_back(server.workspaces, ws->link);
    }
    return true;
}

void workspaces_destroy(vantore_server &server)
{
    for (auto &ws : each<&vantore_workspace::link>(server.workspaces))
        delete &ws;
}

vantore_workspace *workspace_by_num(vantore_server &server, long num)
{
    for (auto &ws : each<&vantore_workspace::link>(server.workspaces))
        if (ws.num == num)
            return &ws;
    return nullptr;
}

static void apply_line(const ws_cfg &cfg, vantore_workspace &ws)
{
    if (cfg.name[0] != '\0')
        copy_text(ws.name, text_of(cfg.name));
    ws.pref_output = cfg.output;
    ws.layout = cfg.layout_set ? cfg.layout : g_default_layout;
    ws.tile_mode = cfg.tile_mode;
}

void config_apply_workspaces(vantore_server &server)
{
    for (auto &ws : each<&vantore_workspace::link>(server.workspaces)) {
        ws.master_ratio = g_default_master;
        if (const ws_cfg &cfg = g_ws_cfg[size_t(ws.num)]; cfg.set) {
            apply_line(cfg, ws);
        } else {
            // The name and the output stay until the next session when their line is gone.
            ws.layout = g_default_layout;
            ws.tile_mode = TM_MASTER;
        }
    }
}

vantore_workspace *pick_workspace_for_output(vantore_server &server, const wlr_output *output,
                                             const vantore_workspace *exclude)
{
    vantore_workspace *lowest = nullptr;
    for (auto &ws : each<&vantore_workspace::link>(server.workspaces)) {
        if (ws.output != nullptr || &ws == exclude || absent_output_of(ws) != nullptr)
            continue;
        if (output->name != nullptr && text_equals(ws.pref_output, output->name))
            return &ws;
        if (lowest == nullptr)
            lowest = &ws;
    }
    return lowest;
}

void ws_link(vantore_workspace &ws, vantore_output &o)
{
    o.current_ws = &ws;
    ws.output = &o;
    if (o.wlr_output->name != nullptr)
        copy_text(ws.pref_output, o.wlr_output->name);
}

void ws_bind(vantore_workspace &ws, vantore_output &o)
{
    ws_link(ws, o);
    fit_fullscreen_windows(ws);
    fit_maximized_windows(ws);
}

void refresh_workspace_visibility(vantore_server &server)
{
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
        t.put_away = false;
    show_bound_workspaces(server);
}

// Starts with the window that was raised first, because each one comes to the top of its new tree.
void show_bound_workspaces(vantore_server &server)
{
    slide_end(server);
    for (auto &ws : each<&vantore_workspace::link>(server.workspaces))
        wlr_scene_node_set_enabled(&ws.tree->node, ws.output != nullptr);
    const wl_list &windows = server.toplevels;
    for (wl_list *at = windows.prev; at != &windows; at = at->prev) {
        auto &t = *owner_of<&vantore_toplevel::link>(at);
        refresh_showing_alone(t);
        tl_set_minimized(t, t.minimized || output_showing(t) == nullptr);
    }
    visible_changed(server);
}

vantore_output *output_showing(const vantore_toplevel &t)
{
    return t.workspace != nullptr ? t.workspace->output : nullptr;
}

bool toplevel_visible(const vantore_toplevel &t)
{
    return output_showing(t) != nullptr && t.scene_tree->node.enabled;
}

void toplevel_set_workspace(vantore_toplevel &t, vantore_workspace *ws)
{
    if (ws == nullptr || ws == t.workspace)
        return;
    t.workspace = ws;
    move_to_back(ws->toplevels, t.ws_link);
    t.put_away = false;
    refresh_showing(t);
}
