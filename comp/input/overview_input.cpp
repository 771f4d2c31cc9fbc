#include "overview_input.hpp"

#include "../broadcast.hpp"
#include "../outputs/output.hpp"
#include "../presentation/effects.hpp"
#include "../server.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/focus.hpp"
#include "../workspaces/switch.hpp"
#include "../workspaces/transfer.hpp"
#include "../workspaces/workspace.hpp"
#include "overview.hpp"
#include "overview_boxes.hpp"
#include "overview_display.hpp"
#include "overview_zoom.hpp"

#include <algorithm>
#include <linux/input-event-codes.h>
#include <ranges>
#include <utility>

static constexpr double drag_distance_squared = 49; // 7 pixels
static constexpr float dragged_opacity = 0.9F;
static constexpr int tile_ring = 3, workspace_ring = 5;

static const overview_item *item_at(const vantore_overviewing &overview, int index)
{
    return index >= 0 && index < int(overview.items.size()) ? &overview.items[size_t(index)] : nullptr;
}

static void overview_set_sel(vantore_server &server, int index)
{
    vantore_overviewing &overview = server.overview;
    overview.sel = index;
    const overview_item *item = item_at(overview, index);
    overview_ring_show(overview, item != nullptr ? &item->rect : nullptr, tile_ring);
}

// Returns the first item whose box of this kind holds the pointer, or -1.
static int item_under_pointer(const vantore_server &server, wlr_box overview_item::*kind)
{
    const auto &items = server.overview.items;
    const auto found = std::ranges::find_if(items, [&](const overview_item &item) {
        return wlr_box_contains_point(&(item.*kind), server.cursor->x, server.cursor->y);
    });
    return found != items.end() ? int(found - items.begin()) : -1;
}

static const overview_workspace *workspace_under_pointer(const vantore_server &server)
{
    const auto &items = server.overview.ws_items;
    const auto found = std::ranges::find_if(items, [&](const overview_workspace &item) {
        return wlr_box_contains_point(&item.box, server.cursor->x, server.cursor->y);
    });
    return found != items.end() ? &*found : nullptr;
}

void overview_hover(vantore_server &server)
{
    overview_set_sel(server, item_under_pointer(server, &overview_item::rect));
}

static void overview_sel_move(vantore_server &server, int dx, int dy)
{
    const vantore_overviewing &overview = server.overview;
    if (overview.items.empty())
        return;
    if (item_at(overview, overview.sel) == nullptr) {
        const auto found = std::ranges::find(overview.items, focused_toplevel(server), &overview_item::t);
        return overview_set_sel(server,
                                found != overview.items.end() ? int(found - overview.items.begin()) : 0);
    }
    const auto tiles =
        overview.items | std::views::transform(&overview_item::rect) | std::ranges::to<std::vector>();
    overview_set_sel(server, overview_neighbour(tiles, overview.sel, dx, dy));
}

static void select_next(vantore_server &server)
{
    const vantore_overviewing &overview = server.overview;
    if (!overview.items.empty())
        overview_set_sel(server, (overview.sel + 1) % int(overview.items.size()));
}

static void pick(vantore_server &server, vantore_toplevel &t)
{
    overview_exit(server);
    if (output_showing(t) != nullptr) // its workspace may have changed since its tile was drawn
        focus_toplevel_ex(&t, true);
}

void overview_key(vantore_server &server, xkb_keysym_t sym)
{
    switch (sym) {
    case XKB_KEY_Left:
        return overview_sel_move(server, -1, 0);
    case XKB_KEY_Right:
        return overview_sel_move(server, 1, 0);
    case XKB_KEY_Up:
        return overview_sel_move(server, 0, -1);
    case XKB_KEY_Down:
        return overview_sel_move(server, 0, 1);
    case XKB_KEY_Tab:
        return select_next(server);
    case XKB_KEY_Return:
    case XKB_KEY_KP_Enter:
    case XKB_KEY_space:
        if (const overview_item *item = item_at(server.overview, server.overview.sel))
            pick(server, *item->t);
        return;
    case XKB_KEY_Escape:
        return overview_exit(server);
    default:
        return;
    }
}

static void begin_drag_if_far(vantore_server &server)
{
    vantore_overviewing &overview = server.overview;
    const overview_item *item = item_at(overview, overview.press);
    if (item == nullptr || item->node == nullptr || overview.drag)
        return;
    const double dx = server.cursor->x - overview.press_x, dy = server.cursor->y - overview.press_y;
    if (dx * dx + dy * dy <= drag_distance_squared)
        return;
    overview_zoom_finish(server);
    overview.drag = true;
    wlr_scene_node_raise_to_top(&item->node->node);
}

static void drag_tile(vantore_server &server)
{
    vantore_overviewing &overview = server.overview;
    const overview_item &item = overview.items[size_t(overview.press)];
    const wlr_box box = overview_dragged(item.rect, server.cursor->x, server.cursor->y);
    wlr_scene_buffer_set_dest_size(item.node, box.width, box.height);
    wlr_scene_buffer_set_opacity(item.node, dragged_opacity);
    wlr_scene_node_set_position(&item.node->node, box.x, box.y);
    const overview_workspace *target = workspace_under_pointer(server);
    overview_ring_show(overview, target != nullptr ? &target->box : nullptr, workspace_ring);
}

const char *overview_motion(vantore_server &server)
{
    begin_drag_if_far(server);
    if (server.overview.drag) {
        drag_tile(server);
        return "grabbing";
    }
    overview_hover(server);
    return "default";
}

static void press_on_workspace(vantore_server &server, vantore_workspace &ws)
{
    vantore_output &o = *server.overview.output;
    if (&ws == o.current_ws)
        return;
    output_set_current(o, &ws);
    overview_rebuild(server);
}

static void press_on_tile(vantore_server &server)
{
    vantore_overviewing &overview = server.overview;
    if (const overview_item *closed =
            item_at(overview, item_under_pointer(server, &overview_item::close_rect))) {
        overview.saw_press = false; // the end of this click does not close the overview
        return tl_close(*closed->t);
    }
    overview.press = item_under_pointer(server, &overview_item::rect);
    overview.press_x = server.cursor->x;
    overview.press_y = server.cursor->y;
}

void overview_press(vantore_server &server, uint32_t button)
{
    vantore_overviewing &overview = server.overview;
    overview.saw_press = true;
    if (overview.drag)
        return;
    if (const overview_workspace *item = workspace_under_pointer(server))
        press_on_workspace(server, *item->workspace);
    else if (button == BTN_LEFT)
        press_on_tile(server);
    else
        overview.press = -1;
}

static void drop(vantore_server &server, vantore_toplevel &t)
{
    if (const overview_workspace *target = workspace_under_pointer(server))
        carry_to_workspace(t, *target->workspace);
    ipc_broadcast(server, VNT_EVT_WORKSPACES);
    overview_rebuild(server);
}

bool overview_release(vantore_server &server)
{
    vantore_overviewing &overview = server.overview;
    if (!overview.saw_press)
        return false;
    const bool dragged = std::exchange(overview.drag, false);
    const overview_item *item = item_at(overview, std::exchange(overview.press, -1));
    if (item == nullptr)
        overview_exit(server);
    else if (dragged)
        drop(server, *item->t);
    else
        pick(server, *item->t);
    return true;
}
