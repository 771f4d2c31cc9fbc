#include "arrange.hpp"

#include "../config/settings.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../presentation/effects.hpp"
#include "../server.hpp"
#include "../windows/placement.hpp"
#include "../windows/showing.hpp"
#include "../windows/states.hpp"
#include "../windows/toplevel.hpp"
#include "stacks.hpp"
#include "tile_boxes.hpp"
#include "tiles.hpp"
#include "workspace.hpp"

#include <algorithm>

static void rescue(vantore_toplevel &t, const wlr_box &screen, const wlr_box &usable)
{
    if (t.maximized)
        return toplevel_fill(t, usable);
    const wlr_box box = toplevel_box(t);
    t.float_geo = with_bar_in(usable, center_in(screen, box.width, box.height, 0), titlebar_of(t));
    tl_move(t, t.float_geo.x, t.float_geo.y);
}

// Brings back floats that lie wholly outside the workspace's output after an output was unplugged or moved. A
// float with a single pixel on the output stays, even if that pixel lies under a panel.
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
        rescue(t, screen, ws.output->usable);
    }
}

// A list of fixed capacity. It drops what is added when it is full.
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

static tile_slots gather_slots(vantore_workspace &ws)
{
    tile_slots slots;
    short_list<int> stacks;
    for (auto &t : each<&vantore_toplevel::ws_link>(ws.toplevels)) {
        if (!tile_participates(t) || std::ranges::contains(stacks.all(), t.stack_id))
            continue;
        if (t.stack_id == 0) {
            slots.add(&t);
            continue;
        }
        stacks.add(t.stack_id);
        if (vantore_toplevel *active = stack_active_member(*ws.server, &ws, t.stack_id))
            slots.add(active);
    }
    return slots;
}

void tile_place(vantore_toplevel &t, const wlr_box &box)
{
    const int bar = titlebar_of(t);
    tl_set_tiled(t, true);
    tl_place(t, {box.x, box.y + bar, std::max(box.width, 1), std::max(box.height - bar, 1)});
}

// The tabs take the place of the title bar.
static void place_stack(vantore_toplevel &t, vantore_workspace &ws, const wlr_box &box)
{
    tl_place(t, {box.x, box.y + tabbar_height, box.width, std::max(box.height - tabbar_height, 1)});
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
    if (ws == nullptr)
        return;
    for (auto &t : each<&vantore_toplevel::ws_link>(ws->toplevels)) {
        refresh_showing_alone(t);
        effects_layout(t); // tiles and floats have other effects
    }
    if (ws->output == nullptr)
        return;
    ws_rescue_offscreen_floats(*ws);
    if (ws->layout != VANTORE_LAYOUT_TILING)
        return;
    const tile_slots slots = gather_slots(*ws);
    place_tiles(*ws, slots.all());
}
