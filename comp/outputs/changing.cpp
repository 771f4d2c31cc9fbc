#include "changing.hpp"

#include "../handles.hpp"
#include "../input/modes.hpp"
#include "../input/resting_pointer.hpp"
#include "../notify.hpp"
#include "../server.hpp"
#include "../windows/maximized.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/transfer.hpp"
#include "../workspaces/workspace.hpp"
#include "layout_repair.hpp"
#include "lookup.hpp"
#include "output.hpp"
#include "power.hpp"
#include "rehome.hpp"

#include <algorithm>
#include <utility>
#include <vector>

// An output that the layout has placed by itself would be placed anew when another one moves. The layout puts
// such outputs side by side, to the right of the others and in this order, so none moves on the way.
static void pin_outputs(wlr_output_layout &layout)
{
    for (const auto &place : each<&wlr_output_layout_output::link>(layout.outputs))
        if (place.auto_configured)
            wlr_output_layout_add(&layout, place.output, place.x, place.y);
}

static void shift_outputs(wlr_output_layout &layout, const layout_offset &by)
{
    pin_outputs(layout);
    for (const auto &place : each<&wlr_output_layout_output::link>(layout.outputs))
        wlr_output_layout_add(&layout, place.output, place.x + by.x, place.y + by.y);
}

static void place_side_by_side(wlr_output_layout &layout)
{
    for (const auto &place : each<&wlr_output_layout_output::link>(layout.outputs))
        wlr_output_layout_add_auto(&layout, place.output);
}

static void move_output(const vantore_output &o, int x, int y)
{
    end_modes(*o.server); // they remember places
    pin_outputs(*o.server->output_layout);
    wlr_output_layout_add(o.server->output_layout, o.wlr_output, x, y);
}

static void deoverlap_moved(vantore_output &moved)
{
    std::vector<wlr_box> others;
    for (const auto &o : each<&vantore_output::link>(moved.server->outputs))
        if (&o != &moved && o.wlr_output->enabled)
            others.push_back(output_layout_box(o));
    const wlr_box box = output_layout_box(moved);
    const layout_offset way = way_out_of_overlaps(box, others);
    if (way != layout_offset{})
        move_output(moved, box.x + way.x, box.y + way.y);
}

// Many commands in a row can move outputs apart for ever.
static bool is_too_far(const wlr_box &box, const layout_offset &way)
{
    static constexpr int farthest = 4'000'000;
    return box.x + way.x > farthest || box.y + way.y > farthest;
}

void normalize_output_layout(vantore_server &server)
{
    std::vector<wlr_box> boxes;
    for (const auto &o : each<&vantore_output::link>(server.outputs))
        if (o.wlr_output->enabled)
            boxes.push_back(output_layout_box(o));
    const auto way = way_to_origin(boxes);
    if (!way)
        return;
    if (std::ranges::any_of(boxes, [&](const wlr_box &box) { return is_too_far(box, *way); }))
        return place_side_by_side(*server.output_layout);
    end_modes(server);
    const maximized_windows maximized{server};
    const double x = server.cursor->x, y = server.cursor->y; // it moves when its output does
    shift_outputs(*server.output_layout, *way);
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
        shift_window(t, *way);
    for (remembered_output &remembered : server.absence.outputs) {
        remembered.description.box.x += way->x;
        remembered.description.box.y += way->y;
    }
    server.absence.pointer_x += way->x;
    server.absence.pointer_y += way->y;
    wlr_cursor_warp(server.cursor, nullptr, x + way->x, y + way->y);
    outputs_rearranged(server);
    maximized.follow();
    pointer_look_again(server);
    wlr_log(WLR_INFO, "anchored live layout to 0,0 (shifted by %d,%d)", way->x, way->y);
}

static void commit(const vantore_output &o, const output_state &state)
{
    if (!wlr_output_commit_state(o.wlr_output, &state))
        wlr_log(WLR_ERROR, "vantore-comp: output %s refuses the change", output_name(o.wlr_output));
}

static wlr_output_mode *mode_for(const vantore_output &o, const output_mode_wish &wish)
{
    wlr_output_mode *best = nullptr;
    const auto distance = [&](const wlr_output_mode &mode) {
        return std::abs(mode.refresh / 1000 - wish.refresh_hz);
    };
    for (auto &mode : each<&wlr_output_mode::link>(o.wlr_output->modes)) {
        if (mode.width != wish.width || mode.height != wish.height)
            continue;
        if (best == nullptr || (wish.refresh_hz > 0 && distance(mode) < distance(*best)))
            best = &mode;
    }
    return best;
}

static void put_mode(const vantore_output &o, const output_mode_wish &wish, output_state &into)
{
    if (wlr_output_mode *mode = mode_for(o, wish))
        wlr_output_state_set_mode(&into, mode);
    else
        wlr_output_state_set_custom_mode(&into, wish.width, wish.height, wish.refresh_hz * 1000);
}

void restore_output(const vantore_output &o, const output_description &as_it_was)
{
    const struct wlr_output &out = *o.wlr_output;
    const auto &[width, height, refresh] = as_it_was.current;
    output_state state;
    if (out.scale != as_it_was.scale)
        wlr_output_state_set_scale(&state, as_it_was.scale);
    if (out.transform != as_it_was.transform)
        wlr_output_state_set_transform(&state, as_it_was.transform);
    if (out.enabled && width > 0 && (out.width != width || out.height != height || out.refresh != refresh))
        put_mode(o, {.width = width, .height = height, .refresh_hz = refresh / 1000}, state);
    if (state.committed != 0)
        commit(o, state);
}

// Takes one step after the other. Each call returns false if no step may follow.
class output_change
{
public:
    output_change(vantore_output &changed, std::string_view name)
        : o{changed}, token{name}, maximized{*changed.server}
    {
        for (auto &each_one : each<&vantore_output::link>(o.server->outputs))
            before.emplace_back(&each_one, output_layout_box(each_one));
    }
    bool operator()(const output_enable &)
    {
        output_turn_on(o);
        rehome = rehome || o.current_ws == nullptr;
        return true;
    }
    bool operator()(const output_disable &);
    bool operator()(const output_transform &wish)
    {
        output_state state;
        wlr_output_state_set_transform(&state, wish.to);
        commit(o, state);
        return true;
    }
    bool operator()(const output_scale &wish)
    {
        output_state state;
        wlr_output_state_set_scale(&state, float(wish.factor));
        commit(o, state);
        wlr_xcursor_manager_load(o.server->xcursor_mgr, o.wlr_output->scale);
        return true;
    }
    bool operator()(const output_position &wish)
    {
        move_output(o, wish.x, wish.y);
        return true;
    }
    bool operator()(const output_mode_wish &wish)
    {
        output_state state;
        put_mode(o, wish, state);
        commit(o, state);
        return true;
    }
    bool operator()(const output_unhandled &unhandled)
    {
        wlr_log(WLR_INFO, "IPC output: unhandled '%s %s'", token.c_str(), unhandled.word.c_str());
        return true;
    }
    // Windows go along with outputs that have moved, also with those that the layout has moved.
    void carry_windows();
    void settle();

private:
    vantore_output &o;
    std::string token;
    maximized_windows maximized;
    std::vector<std::pair<vantore_output *, wlr_box>> before; // where each output was
    bool rehome = false; // an output has lost its workspace, or needs one
};

// While all displays are dark, those that will be lit again are on.
static bool is_on(const vantore_output &o)
{
    return g_dpms_off ? !o.turned_off : o.wlr_output->enabled;
}

static int outputs_on_count(const vantore_server &server)
{
    int count = 0;
    for (const auto &o : each<&vantore_output::link>(server.outputs))
        count += is_on(o) ? 1 : 0;
    return count;
}

bool output_change::operator()(const output_disable &)
{
    vantore_server &server = *o.server;
    if (is_on(o) && outputs_on_count(server) <= 1) {
        wlr_log(WLR_INFO, "IPC output: refusing to disable only display '%s'", token.c_str());
        config_notify("Can't disable the only display");
        return false;
    }
    output_leaves(server, o.wlr_output); // modes end there
    output_turn_off(o);
    if (vantore_workspace *ws = std::exchange(o.current_ws, nullptr))
        ws->output = nullptr;
    rehome = true;
    return true;
}

void output_change::carry_windows()
{
    for (const auto &[output, was] : before) {
        const wlr_box now = output_layout_box(*output);
        const layout_offset way{.x = now.x - was.x, .y = now.y - was.y};
        if (output->current_ws == nullptr || way == layout_offset{})
            continue;
        for (auto &t : each<&vantore_toplevel::ws_link>(output->current_ws->toplevels))
            shift_window(t, way);
    }
}

void output_change::settle()
{
    vantore_server &server = *o.server;
    if (!g_applying_profile && o.wlr_output->enabled)
        deoverlap_moved(o);
    carry_windows();
    if (rehome)
        rehome_outputs(server);
    outputs_rearranged(server);
    maximized.follow();
    if (!g_applying_profile)
        normalize_output_layout(server);
    settle_outputs(server);
}

void change_output(vantore_output &o, std::string_view token, std::span<const output_step> steps)
{
    output_change change{o, token};
    for (const output_step &step : steps)
        if (!std::visit(change, step))
            return change.carry_windows();
    if (!steps.empty())
        change.settle();
}
