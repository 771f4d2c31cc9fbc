#include "rehome.hpp"

#include "../broadcast.hpp"
#include "../clock.hpp"
#include "../input/devices.hpp"
#include "../input/pointer.hpp"
#include "../input/resting_pointer.hpp"
#include "../server.hpp"
#include "../windows/xwayland.hpp"
#include "../workspaces/arrange.hpp"
#include "../workspaces/focus.hpp"
#include "../workspaces/workspace.hpp"
#include "absent.hpp"
#include "lookup.hpp"
#include "output.hpp"

#include <algorithm>
#include <cmath>
#include <optional>

struct point {
    double x, y;
};

static point center_of(const wlr_box &box)
{
    return {.x = box.x + box.width / 2.0, .y = box.y + box.height / 2.0};
}

static vantore_workspace *orphan_with_windows(vantore_server &server)
{
    for (auto &ws : each<&vantore_workspace::link>(server.workspaces))
        if (ws.output == nullptr && absent_output_of(ws) == nullptr && wl_list_empty(&ws.toplevels) == 0)
            return &ws;
    return nullptr;
}

void rehome_outputs(vantore_server &server)
{
    for (auto &o : each<&vantore_output::link>(server.outputs)) {
        if (!shows_desktop(o) || o.current_ws != nullptr)
            continue;
        vantore_workspace *ws = orphan_with_windows(server);
        if (ws == nullptr)
            ws = pick_workspace_for_output(server, o.wlr_output, nullptr);
        if (ws == nullptr)
            continue;
        ws_bind(*ws, o);
        arrange_workspace(ws);
    }
    refresh_workspace_visibility(server);
}

static bool cursor_is_on_desktop(vantore_server &server)
{
    const vantore_output *at = output_at(server, server.cursor->x, server.cursor->y);
    return at != nullptr && shows_desktop(*at);
}

static vantore_output *output_nearest_to_cursor(vantore_server &server)
{
    vantore_output *nearest = nullptr;
    double best = 1e18;
    for (auto &o : each<&vantore_output::link>(server.outputs)) {
        const wlr_box box = output_layout_box(o);
        if (!shows_desktop(o) || box.width <= 0 || box.height <= 0)
            continue;
        const point center = center_of(box);
        const double distance = std::hypot(center.x - server.cursor->x, center.y - server.cursor->y);
        if (distance < best) {
            best = distance;
            nearest = &o;
        }
    }
    return nearest;
}

void cursor_ensure_on_output(vantore_server &server)
{
    if (cursor_is_on_desktop(server))
        return;
    const vantore_output *o = output_nearest_to_cursor(server);
    if (o == nullptr)
        return;
    const bool has_usable = o->usable.width > 0 && o->usable.height > 0;
    const point target = center_of(has_usable ? o->usable : output_layout_box(*o));
    wlr_cursor_warp_closest(server.cursor, nullptr, target.x, target.y);
    process_cursor_motion(server, uint32_t(mono_ms()));
}

static point nearest_in(const wlr_box &box, const wlr_cursor &cursor)
{
    return {.x = std::clamp<double>(cursor.x, box.x, box.x + box.width - 1),
            .y = std::clamp<double>(cursor.y, box.y, box.y + box.height - 1)};
}

void clamp_cursor_off_mirror(vantore_server &server)
{
    const wlr_cursor &cursor = *server.cursor;
    const vantore_output *at = output_at(server, cursor.x, cursor.y);
    if (at == nullptr || shows_desktop(*at))
        return;
    std::optional<point> best;
    const auto distance = [&](const point &p) { return std::hypot(p.x - cursor.x, p.y - cursor.y); };
    for (const auto &o : each<&vantore_output::link>(server.outputs)) {
        const wlr_box box = output_layout_box(o);
        if (!shows_desktop(o) || box.width < 1 || box.height < 1)
            continue;
        const point nearest = nearest_in(box, cursor);
        if (!best || distance(nearest) < distance(*best))
            best = nearest;
    }
    if (best) // otherwise all are dark
        wlr_cursor_warp(server.cursor, nullptr, best->x, best->y);
}

void show_workspaces(vantore_server &server)
{
    if (server.absence.outputs.empty())
        refresh_workspace_visibility(server);
    else
        show_bound_workspaces(server); // what is minimized stays so until all outputs have returned
}

void hand_workspace_to(vantore_output &o)
{
    vantore_workspace *ws = pick_workspace_for_output(*o.server, o.wlr_output, nullptr);
    if (ws != nullptr)
        ws_bind(*ws, o);
    show_workspaces(*o.server);
    focus_top_if_hidden(*o.server); // the window that has the keyboard may be on an absent output
    arrange_workspace(ws); // its windows may come from an output at another place
}

void find_homes(vantore_server &server)
{
    const auto is_homeless = [](const vantore_output &o) {
        return shows_desktop(o) && o.current_ws == nullptr;
    };
    bool found = false;
    for (const auto &o : each<&vantore_output::link>(server.outputs))
        found = found || is_homeless(o);
    if (!found)
        return;
    rehome_outputs(server);
    settle_outputs(server);
}

void settle_outputs(vantore_server &server)
{
    focus_top_if_hidden(server);
    if (server.seat->keyboard_state.focused_surface == nullptr)
        focus_back(server); // its window may have come back
    if (wl_list_empty(&server.outputs) == 0 && focus_is_hidden(server)) // no window can be seen
        focus_clear(server);
    cursor_ensure_on_output(server);
    pointer_look_again(server);
    apply_touch_mapping(server);
    apply_x_primary(server);
    ipc_broadcast(server, VNT_EVT_OUTPUTS);
}
