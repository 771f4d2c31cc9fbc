#include "arrange.hpp"

#include "../config/settings.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../windows/placement.hpp"
#include "../windows/toplevel.hpp"
#include "stacks.hpp"
#include "tile_boxes.hpp"
#include "tiles.hpp"
#include "workspace.hpp"

#include <algorithm>

// Brings back floats that lie wholly outside the workspace's output, as an unplugged or moved output leaves
// them. One pixel on the output, panels included, is enough to stay.
static void ws_rescue_offscreen_floats(vantore_workspace &ws)
{
    const wlr_box screen = output_layout_box(*ws.output);
    if (screen.width < 1 || screen.height < 1)
        return;
    for (auto &t : each<&vantore_toplevel::ws_link>(ws.toplevels)) {
        if (toplevel_is_tiled(t) || t.fullscreen || &t == ws.server->drag.grabbed_toplevel)
            continue;
        const wlr_box box = toplevel_box(t);
        if (box.width < 1 || box.height < 1 || boxes_overlap(box, screen))
            continue;
        t.float_geo = center_in(screen, box.width, box.height, 0);
        tl_move(t, t.float_geo.x, t.float_geo.y);
    }
}

// What has left the tiles shows by itself, without the tabs of its stack.
static void show_outside_of_tiles(vantore_workspace &ws)
{
    for (auto &t : each<&vantore_toplevel::ws_link>(ws.toplevels)) {
        if (toplevel_is_tiled(t) || t.fullscreen || t.minimized || !tl_mapped(t))
            continue;
        wlr_scene_node_set_enabled(&t.scene_tree->node, true);
        wlr_scene_node_set_enabled(&t.tabbar->node, false);
    }
}

// A list of fixed room; what comes when it is full is left out.
template <class T> struct short_list {
    std::array<T, max_tiles> at{};
    size_t count = 0;

    void add(T item)
    {
        if (count < at.size())
            at[count++] = item;
    }
    [[nodiscard]] std::span<const T> all() const { return {at.data(), count}; }
};

using tile_slots = short_list<vantore_toplevel *>;

// Of a stack only its active member shows.
static void show_active_member(vantore_workspace &ws, int stack_id, const vantore_toplevel *active)
{
    for (auto &t : each<&vantore_toplevel::ws_link>(ws.toplevels)) {
        if (t.stack_id != stack_id || !tile_participates(t))
            continue;
        wlr_scene_node_set_enabled(&t.scene_tree->node, &t == active);
        if (&t != active)
            wlr_scene_node_set_enabled(&t.tabbar->node, false);
    }
}

static tile_slots gather_slots(vantore_workspace &ws)
{
    tile_slots slots;
    short_list<int> stacks;
    for (auto &t : each<&vantore_toplevel::ws_link>(ws.toplevels)) {
        if (!tile_participates(t) || std::ranges::contains(stacks.all(), t.stack_id))
            continue;
        if (t.stack_id == 0) {
            wlr_scene_node_set_enabled(&t.scene_tree->node, true);
            wlr_scene_node_set_enabled(&t.tabbar->node, false);
            slots.add(&t);
            continue;
        }
        stacks.add(t.stack_id);
        vantore_toplevel *active = stack_active_member(*ws.server, t.stack_id);
        show_active_member(ws, t.stack_id, active);
        if (active != nullptr)
            slots.add(active);
    }
    return slots;
}

// Asks again only where the client may think of another size: an arrangement is made far more often than a
// size changes, and each request wakes the client.
static void want_size(vantore_toplevel &t, int w, int h)
{
    t.want_w = w;
    t.want_h = h;
    if (!tl_has_size(t, w, h))
        tl_set_size(t, w, h);
}

void tile_place(vantore_toplevel &t, const wlr_box &box)
{
    const int bar = titlebar_of(t);
    wlr_scene_node_set_position(&t.scene_tree->node, box.x, box.y + bar);
    tl_set_tiled(t, true);
    want_size(t, std::max(box.width, 1), std::max(box.height - bar, 1));
}

// The tabs take the place of the title bar.
static void place_stack(vantore_toplevel &t, vantore_workspace &ws, const wlr_box &box)
{
    wlr_scene_node_set_position(&t.scene_tree->node, box.x, box.y + tabbar_height);
    want_size(t, box.width, std::max(box.height - tabbar_height, 1));
    render_tabbar(t, ws, box.width);
}

static void place_tiles(vantore_workspace &ws, std::span<vantore_toplevel *const> slots)
{
    std::array<tile_weight, max_tiles> weights;
    std::array<wlr_box, max_tiles> boxes;
    for (size_t i = 0; i < slots.size(); i++)
        weights[i] = {.width = slots[i]->tile_weight, .height = slots[i]->tile_hweight};
    const tile_rules rules{.mode = ws.tile_mode,
                           .area = tile_area(ws.output->usable, g_gap),
                           .gap = g_gap,
                           .master_ratio = ws.master_ratio};
    tile_boxes(rules, std::span{weights}.first(slots.size()), std::span{boxes}.first(slots.size()));
    for (size_t i = 0; i < slots.size(); i++) {
        if (slots[i]->stack_id != 0)
            place_stack(*slots[i], ws, boxes[i]);
        else
            tile_place(*slots[i], boxes[i]);
    }
}

void arrange_workspace(vantore_workspace *ws)
{
    if (ws == nullptr || ws->output == nullptr)
        return;
    show_outside_of_tiles(*ws);
    ws_rescue_offscreen_floats(*ws);
    if (ws->layout != VANTORE_LAYOUT_TILING)
        return;
    const tile_slots slots = gather_slots(*ws);
    place_tiles(*ws, slots.all());
}
