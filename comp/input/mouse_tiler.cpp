#include "mouse_tiler.hpp"

#include "../config/settings.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../windows/states.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/arrange.hpp"
#include "../workspaces/switch.hpp"
#include "../workspaces/transfer.hpp"
#include "../workspaces/workspace.hpp"
#include "interactive.hpp"
#include "tiler_display.hpp"
#include "tiler_zones.hpp"

static constexpr int overlay_layer = 3;

static wlr_output *output_under_cursor(const vantore_server &server)
{
    return layout_output_at(server, server.cursor->x, server.cursor->y);
}

static int current_tile(vantore_server &server)
{
    const vantore_output *o = current_output(server);
    return o != nullptr && o->current_ws != nullptr ? o->current_ws->num - 1 : 0;
}

static std::vector<mt_window_sketch> sketches(vantore_server &server, const wlr_box &usable)
{
    std::vector<mt_window_sketch> result;
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels)) {
        if (t.workspace == nullptr || !tl_mapped(t) || t.minimized)
            continue;
        const int tile = t.workspace->num - 1;
        if (const auto box = mt_miniature(tile, toplevel_box(t), usable))
            result.push_back({.tile = tile, .box = *box});
    }
    return result;
}

static void mt_draw(vantore_server &server)
{
    const wlr_box usable = usable_at_cursor(server);
    const wlr_box hud = mt_hud_box(usable, g_tiler_top);
    const mt_display display{.pick{.zone = server.tiler.mt_zone, .workspace = server.tiler.mt_ws},
                             .current_tile = current_tile(server),
                             .windows = sketches(server, usable)};
    if (!overlay_show(server.tiler.mt_hud, server.layers[overlay_layer], mt_render(display), hud.x, hud.y))
        return;
    server.tiler.mt_output = output_under_cursor(server);
}

void mt_show(vantore_server &server)
{
    server.tiler.mt_visible = true;
    server.tiler.mt_zone = server.tiler.mt_ws = -1;
    mt_draw(server);
}

void mt_hide(vantore_server &server)
{
    server.tiler.mt_visible = false;
    server.tiler.mt_zone = server.tiler.mt_ws = -1;
    server.tiler.mt_output = nullptr;
    overlay_hide(server.tiler.mt_hud);
}

void mt_output_leaves(vantore_server &server, const wlr_output *output)
{
    if (server.tiler.mt_output == output)
        mt_hide(server);
}

static wlr_box landing_box(const mt_zone_def &zone, const wlr_box &usable)
{
    return MT_PADS[size_t(zone.pad)].maximise ? usable : mt_zone_landing(zone, usable, g_gap);
}

static void preview_zone(vantore_server &server)
{
    if (server.tiler.mt_zone < 0)
        return wlr_scene_node_set_enabled(&server.snap_preview->node, false);
    const wlr_box box = landing_box(MT_ZONES[size_t(server.tiler.mt_zone)], usable_at_cursor(server));
    wlr_scene_node_set_position(&server.snap_preview->node, box.x, box.y);
    wlr_scene_rect_set_size(server.snap_preview, box.width, box.height);
    wlr_scene_node_set_enabled(&server.snap_preview->node, true);
}

void mt_update(vantore_server &server)
{
    if (server.tiler.mt_hud.node == nullptr)
        return;
    const wlr_output *o = output_under_cursor(server);
    if (o != nullptr && o != server.tiler.mt_output)
        mt_show(server);
    const wlr_scene_node &node = server.tiler.mt_hud.node->node;
    const mt_pick pick = mt_pick_at({.x = node.x, .y = node.y}, server.cursor->x, server.cursor->y);
    if (pick != mt_pick{.zone = server.tiler.mt_zone, .workspace = server.tiler.mt_ws}) {
        server.tiler.mt_zone = pick.zone;
        server.tiler.mt_ws = pick.workspace;
        mt_draw(server);
    }
    preview_zone(server);
}

static bool send_to_workspace(vantore_server &server, vantore_toplevel &t, int num)
{
    if (workspace_by_num(server, num) == nullptr)
        return false;
    t.float_geo = toplevel_box(t);
    move_toplevel_to_workspace(t, num);
    goto_workspace(server, num);
    return true;
}

static bool may_be_pushed(const vantore_toplevel &other, const vantore_toplevel &t)
{
    return &other != &t && tl_mapped(other) && !other.minimized && !other.fullscreen;
}

// Pushes the leftmost and the rightmost of the other windows aside. A single one goes to the left.
static void push_neighbours(const vantore_toplevel &t, const wlr_box &usable)
{
    vantore_toplevel *leftmost = nullptr, *rightmost = nullptr;
    for (auto &other : each<&vantore_toplevel::ws_link>(t.workspace->toplevels)) {
        if (!may_be_pushed(other, t))
            continue;
        const int x = other.scene_tree->node.x;
        if (leftmost == nullptr || x < leftmost->scene_tree->node.x)
            leftmost = &other;
        if (rightmost == nullptr || x > rightmost->scene_tree->node.x)
            rightmost = &other;
    }
    if (leftmost != nullptr)
        snap_window(*leftmost, mt_zone_landing(mt_left_third, usable, g_gap));
    if (rightmost != nullptr && rightmost != leftmost)
        snap_window(*rightmost, mt_zone_landing(mt_right_third, usable, g_gap));
}

bool mt_apply(vantore_server &server, vantore_toplevel &t, int zone, int wsq)
{
    if (wsq >= 0)
        return send_to_workspace(server, t, wsq + 1);
    if (zone < 0)
        return false;
    const mt_zone_def &def = MT_ZONES[size_t(zone)];
    const mt_pad_def &pad = MT_PADS[size_t(def.pad)];
    const wlr_box usable = usable_at_cursor(server);
    if (pad.maximise) {
        if (!t.maximized)
            toplevel_toggle_maximize(t);
        return true;
    }
    snap_window(t, mt_zone_landing(def, usable, g_gap));
    if (pad.insert && t.workspace != nullptr)
        push_neighbours(t, usable);
    arrange_workspace(t.workspace);
    return true;
}
