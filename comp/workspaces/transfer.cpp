#include "transfer.hpp"

#include "../broadcast.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../text.hpp"
#include "../windows/fullscreen.hpp"
#include "../windows/states.hpp"
#include "../windows/toplevel.hpp"
#include "arrange.hpp"
#include "focus.hpp"
#include "switch.hpp"
#include "tiles.hpp"
#include "workspace.hpp"

static layout_offset offset_between(const vantore_output &from, const vantore_output &to)
{
    const wlr_box a = output_layout_box(from), b = output_layout_box(to);
    return {.x = b.x - a.x, .y = b.y - a.y};
}

static void move_node(vantore_toplevel &t, const layout_offset &by)
{
    const wlr_scene_node &node = t.scene_tree->node;
    tl_move(t, node.x + by.x, node.y + by.y);
}

static void move_box(wlr_box &box, const layout_offset &by)
{
    box.x += by.x;
    box.y += by.y;
}

// A window that ends being maximized, fullscreen or snapped must not return to the output that it left.
static void move_boxes_to_return_to(vantore_toplevel &t, const layout_offset &by)
{
    move_box(t.saved_geo, by);
    move_box(t.snap_geo, by);
}

vantore_output *adjacent_output(vantore_server &server, const vantore_output *from, int dir)
{
    if (from == nullptr)
        return nullptr;
    const auto step = [dir](const wl_list &at) { return dir < 0 ? at.prev : at.next; };
    const auto is_passed_over = [&](wl_list *at) {
        return at == &server.outputs ||
               (at != &from->link && !is_usual_screen(*owner_of<&vantore_output::link>(at)));
    };
    wl_list *next = step(from->link);
    while (is_passed_over(next))
        next = step(*next);
    return next != &from->link ? owner_of<&vantore_output::link>(next) : nullptr;
}

// The arrangement that follows places tiles. A fullscreen window covers its output already.
static void carry_window(vantore_toplevel &t, vantore_output &target, const layout_offset &by)
{
    move_boxes_to_return_to(t, by);
    if (t.fullscreen) {
        t.float_geo = toplevel_box(t);
    } else if (t.maximized) {
        toplevel_fill(t, target.usable);
    } else if (!toplevel_is_tiled(t)) {
        move_node(t, by);
        t.float_geo = toplevel_box(t);
    }
}

// Gives an output another workspace after its own has left.
static void give_another_workspace(vantore_output &o, const vantore_workspace &leaving)
{
    o.current_ws = nullptr;
    if (vantore_workspace *other = pick_workspace_for_output(*o.server, o.wlr_output, &leaving))
        ws_bind(*other, o);
}

static void show_moved(vantore_workspace &ws, vantore_output &target)
{
    focus_output(*ws.server, target);
    focus_workspace_top(ws);
    ipc_broadcast(*ws.server, VNT_EVT_WORKSPACES);
}

static void rebind(vantore_workspace &ws, vantore_output &target)
{
    vantore_output *source = ws.output;
    ws.output = nullptr;
    if (source != nullptr)
        give_another_workspace(*source, ws);
    if (target.current_ws != nullptr)
        target.current_ws->output = nullptr;
    ws_bind(ws, target);
    if (source == nullptr)
        return;
    const layout_offset by = offset_between(*source, target);
    for (auto &t : each<&vantore_toplevel::ws_link>(ws.toplevels))
        if (tl_mapped(t))
            carry_window(t, target, by);
}

void move_workspace_to_output(vantore_workspace *ws, vantore_output &target)
{
    if (ws == nullptr || !shows_desktop(target))
        return;
    vantore_output *source = ws->output;
    if (source == &target) {
        ws_bind(*ws, target);
        show_moved(*ws, target);
        return;
    }
    rebind(*ws, target);
    refresh_workspace_visibility(*ws->server);
    if (source != nullptr)
        arrange_workspace(source->current_ws);
    arrange_workspace(ws);
    show_moved(*ws, target);
}

void move_ws_to_adjacent_output(vantore_server &server, int dir)
{
    vantore_output *from = current_output(server);
    if (from == nullptr || from->current_ws == nullptr)
        return;
    if (vantore_output *target = adjacent_output(server, from, dir))
        move_workspace_to_output(from->current_ws, *target);
}

void shift_window(vantore_toplevel &t, const layout_offset &by)
{
    if (t.scene_tree != nullptr)
        move_node(t, by);
    move_box(t.float_geo, by);
    move_boxes_to_return_to(t, by);
}

// Brings a window along to its new workspace's output. The arrangement that follows places tiles.
static void bring_along(vantore_toplevel &t, const vantore_output &target, const layout_offset &by)
{
    if (t.maximized && !t.fullscreen)
        toplevel_fill(t, target.usable);
    else if (!toplevel_is_tiled(t) || t.fullscreen)
        move_node(t, by);
    move_box(t.float_geo, by);
    move_boxes_to_return_to(t, by);
}

// Returns where a window of the workspace would be seen: on the output that shows it, else at its home. May
// be null.
static vantore_output *destination_of(const vantore_workspace &ws)
{
    return ws.output != nullptr ? ws.output : home_of(ws);
}

void carry_to_workspace(vantore_toplevel &t, vantore_workspace &ws)
{
    vantore_workspace *old = t.workspace;
    const vantore_output *source = old != nullptr ? old->output : nullptr;
    vantore_output *target = destination_of(ws);
    toplevel_set_workspace(t, &ws);
    if (source != nullptr && target != nullptr && source != target)
        bring_along(t, *target, offset_between(*source, *target));
    settle_fullscreen(t);
    arrange_workspace(old);
    arrange_workspace(&ws);
}

void move_toplevel_to_workspace(vantore_toplevel &t, long num)
{
    vantore_workspace *ws = workspace_by_num(*t.server, num);
    vantore_workspace *old = t.workspace;
    if (ws == nullptr || ws == old)
        return;
    carry_to_workspace(t, *ws);
    if (old != nullptr && old->output != nullptr) // a hidden workspace needs no focus
        focus_workspace_top(*old);
    ipc_broadcast(*t.server, VNT_EVT_WORKSPACES);
}

void move_focused_to_workspace(vantore_server &server, long num)
{
    if (vantore_toplevel *t = action_target(server))
        move_toplevel_to_workspace(*t, num);
}

static vantore_output *output_to_leave(vantore_toplevel &t)
{
    const vantore_workspace *ws = t.workspace;
    return ws != nullptr && ws->output != nullptr ? ws->output : current_output(*t.server);
}

void move_focused_to_adjacent_output(vantore_server &server, int dir)
{
    vantore_toplevel *t = action_target(server);
    if (t == nullptr || t->fullscreen)
        return;
    const vantore_output *source = output_to_leave(*t);
    const vantore_output *target = adjacent_output(server, source, dir);
    if (target == nullptr || target->current_ws == nullptr)
        return;
    vantore_workspace *old = t->workspace;
    toplevel_set_workspace(*t, target->current_ws);
    bring_along(*t, *target, offset_between(*source, *target));
    arrange_workspace(old);
    arrange_workspace(target->current_ws);
    focus_toplevel_ex(t, true);
    ipc_broadcast(server, VNT_EVT_WINDOWS);
}
