#include "layout.hpp"

#include "../broadcast.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../presentation/decorations.hpp"
#include "../server.hpp"
#include "../windows/states.hpp"
#include "../windows/toplevel.hpp"
#include "arrange.hpp"
#include "focus.hpp"
#include "stacks.hpp"

static void start_floating(vantore_toplevel &t)
{
    t.floating = true;
    wlr_scene_node_raise_to_top(&t.scene_tree->node);
    if (t.float_geo.width < 1)
        t.float_geo = default_float_box(t);
    tl_set_tiled(t, false);
    tl_place(t, t.float_geo);
}

static void stop_floating(vantore_toplevel &t)
{
    t.float_geo = toplevel_box(t);
    t.floating = false;
    tl_set_tiled(t, true);
}

void toggle_float_focused(vantore_server &server)
{
    vantore_toplevel *t = action_target(server);
    if (t == nullptr || t->fullscreen)
        return;
    if (t->floating)
        stop_floating(*t);
    else
        start_floating(*t);
    arrange_workspace(t->workspace);
    ipc_broadcast(server, VNT_EVT_WINDOWS);
}

template <class Do> static void for_each_placed(vantore_workspace &ws, Do act)
{
    for (auto &t : each<&vantore_toplevel::ws_link>(ws.toplevels))
        if (tl_mapped(t) && !t.fullscreen)
            act(t);
}

static void start_tiling(vantore_workspace &ws)
{
    for_each_placed(ws, [](vantore_toplevel &t) { t.float_geo = toplevel_box(t); });
    ws.layout = VANTORE_LAYOUT_TILING;
    arrange_workspace(&ws);
}

// The clients still believe that they are tiled. They learn otherwise only when their window starts to float
// by itself.
static void return_to_float_geo(vantore_toplevel &t)
{
    dec_layout(t);
    tl_place(t, t.float_geo.width > 0 ? t.float_geo : default_float_box(t));
}

static void stop_tiling(vantore_workspace &ws)
{
    for (auto &t : each<&vantore_toplevel::ws_link>(ws.toplevels))
        stack_leave(t);
    ws.layout = VANTORE_LAYOUT_FLOATING;
    arrange_workspace(&ws);
    for_each_placed(ws, return_to_float_geo);
}

void set_ws_layout(vantore_workspace &ws, vantore_layout target)
{
    if (ws.layout == target)
        return;
    if (target == VANTORE_LAYOUT_TILING)
        start_tiling(ws);
    else
        stop_tiling(ws);
    ipc_broadcast(*ws.server, VNT_EVT_WORKSPACES);
}

static vantore_workspace *current_workspace(vantore_server &server)
{
    const vantore_output *o = current_output(server);
    return o != nullptr ? o->current_ws : nullptr;
}

void toggle_ws_layout(vantore_server &server)
{
    if (vantore_workspace *ws = current_workspace(server))
        set_ws_layout(*ws,
                      ws->layout == VANTORE_LAYOUT_TILING ? VANTORE_LAYOUT_FLOATING : VANTORE_LAYOUT_TILING);
}

void set_ws_tile_mode(vantore_workspace &ws, vantore_tile_mode mode)
{
    ws.tile_mode = mode;
    arrange_workspace(&ws);
    ipc_broadcast(*ws.server, VNT_EVT_WORKSPACES);
}

static vantore_tile_mode mode_after(vantore_tile_mode mode)
{
    switch (mode) {
    case TM_MASTER:
        return TM_GRID;
    case TM_GRID:
        return TM_COLUMNS;
    case TM_COLUMNS:
        return TM_MONOCLE;
    case TM_MONOCLE:
        break;
    }
    return TM_MASTER;
}

void cycle_tile_mode(vantore_server &server)
{
    vantore_workspace *ws = current_workspace(server);
    if (ws == nullptr)
        return;
    const bool tiling = ws->layout == VANTORE_LAYOUT_TILING;
    ws->layout = VANTORE_LAYOUT_TILING;
    set_ws_tile_mode(*ws, tiling ? mode_after(ws->tile_mode) : TM_MASTER);
}
