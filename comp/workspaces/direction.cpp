#include "direction.hpp"

#include "../broadcast.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../windows/states.hpp"
#include "../windows/toplevel.hpp"
#include "arrange.hpp"
#include "focus.hpp"
#include "stacks.hpp"
#include "tiles.hpp"
#include "workspace.hpp"

#include <algorithm>
#include <cmath>

static constexpr int step = 40; // layout pixels, of a floating window
static constexpr int least_width = 120, least_height = 60;
static constexpr double weight_step = 0.15, least_weight = 0.3, most_weight = 5.0;
static constexpr double master_step = 0.05, least_master = 0.2, most_master = 0.8;

std::optional<double> direction_score(const wlr_box &from, const wlr_box &candidate, int dx, int dy)
{
    const double ddx = (candidate.x + candidate.width / 2.0) - (from.x + from.width / 2.0);
    const double ddy = (candidate.y + candidate.height / 2.0) - (from.y + from.height / 2.0);
    if (ddx * dx + ddy * dy <= 1)
        return std::nullopt;
    const double along = std::abs(dx != 0 ? ddx : ddy);
    const double across = std::abs(dx != 0 ? ddy : ddx);
    return along + 1.5 * across;
}

// A search for a neighbour may start at a hidden window. The tabs of that window are hidden too, so none of
// them is its neighbour.
static vantore_toplevel *neighbour_tab(const vantore_toplevel &t, int dx)
{
    if (dx == 0 || t.stack_id == 0 || output_showing(t) == nullptr)
        return nullptr;
    const stack_members members{*t.workspace, t.stack_id};
    const int here = members.index_of(t);
    const int wanted = here + dx;
    const bool there = here >= 0 && wanted >= 0 && wanted < int(members.all().size());
    return there ? members.all()[size_t(wanted)] : nullptr;
}

// Of equally near windows, returns the one that was raised last.
static vantore_toplevel *nearest(vantore_server &server, const vantore_toplevel &from, int dx, int dy)
{
    const wlr_box origin = toplevel_box(from);
    vantore_toplevel *best = nullptr;
    double best_score = 1e18;
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels)) {
        if (&t == &from || !toplevel_visible(t))
            continue;
        const auto score = direction_score(origin, toplevel_box(t), dx, dy);
        if (score && *score < best_score) {
            best = &t;
            best_score = *score;
        }
    }
    return best;
}

void focus_direction(vantore_server &server, int dx, int dy)
{
    const vantore_toplevel *current = focused_toplevel(server);
    if (current == nullptr)
        return;
    vantore_toplevel *next = neighbour_tab(*current, dx);
    focus_toplevel_ex(next != nullptr ? next : nearest(server, *current, dx, dy), true);
}

static wl_list *step_in_list(const wl_list &link, int dir)
{
    return dir > 0 ? link.next : link.prev;
}

static vantore_toplevel *neighbour_tile(vantore_toplevel &t, int dir)
{
    const wl_list *end = &t.workspace->toplevels;
    for (wl_list *at = step_in_list(t.ws_link, dir); at != end; at = step_in_list(*at, dir))
        if (auto *other = owner_of<&vantore_toplevel::ws_link>(at); tile_participates(*other))
            return other;
    return nullptr;
}

void move_focused_in_tiles(vantore_server &server, int dir)
{
    vantore_toplevel *t = action_target(server);
    if (t == nullptr || !tile_participates(*t))
        return;
    vantore_toplevel *other = neighbour_tile(*t, dir);
    if (other == nullptr)
        return;
    if (dir > 0)
        move_to_front(other->ws_link, t->ws_link); // right behind it
    else
        move_to_back(other->ws_link, t->ws_link); // right before it
    arrange_workspace(t->workspace);
    ipc_broadcast(server, VNT_EVT_WORKSPACES);
}

void move_direction(vantore_server &server, int dx, int dy)
{
    vantore_toplevel *t = action_target(server);
    if (t == nullptr || t->fullscreen)
        return;
    if (toplevel_is_tiled(*t)) {
        move_focused_in_tiles(server, dx < 0 || dy < 0 ? -1 : 1);
        return;
    }
    const wlr_box box = toplevel_box(*t);
    tl_move(*t, box.x + step * dx, box.y + step * dy);
    remember_as_floating(*t, box.width, box.height);
}

static void resize_floating(vantore_toplevel &t, int dx, int dy)
{
    const wlr_box box = toplevel_box(t);
    const int w = std::max(box.width + step * dx, least_width);
    const int h = std::max(box.height + step * dy, least_height);
    tl_place(t, {box.x, box.y, w, h});
    remember_as_floating(t, w, h);
}

static void step_weight(double &weight, int dir)
{
    const double from = weight > 0 ? weight : 1.0;
    weight = std::clamp(from + weight_step * dir, least_weight, most_weight);
}

static void step_and_arrange(vantore_toplevel &t, double &weight, int dir)
{
    step_weight(weight, dir);
    arrange_workspace(t.workspace);
}

static void resize_beside_master(vantore_toplevel &t, int dx, int dy)
{
    if (dx != 0)
        adjust_master(*t.server, master_step * dx);
    else if (tile_index(t) > 0)
        step_and_arrange(t, t.tile_weight, dy);
}

static void resize_tile(vantore_toplevel &t, int dx, int dy)
{
    switch (t.workspace->tile_mode) {
    case TM_MASTER:
        return resize_beside_master(t, dx, dy);
    case TM_GRID:
        return step_and_arrange(t, dx != 0 ? t.tile_weight : t.tile_hweight, dx + dy);
    case TM_COLUMNS:
        if (dx != 0)
            step_and_arrange(t, t.tile_weight, dx);
        return;
    case TM_MONOCLE:
        return;
    }
}

void resize_direction(vantore_server &server, int dx, int dy)
{
    vantore_toplevel *t = action_target(server);
    if (t == nullptr || t->fullscreen)
        return;
    if (toplevel_is_tiled(*t))
        resize_tile(*t, dx, dy);
    else
        resize_floating(*t, dx, dy);
}

void adjust_master(vantore_server &server, double delta)
{
    const vantore_output *o = current_output(server);
    if (o == nullptr || o->current_ws == nullptr)
        return;
    vantore_workspace &ws = *o->current_ws;
    ws.master_ratio = std::clamp(ws.master_ratio + delta, least_master, most_master);
    arrange_workspace(&ws);
}
