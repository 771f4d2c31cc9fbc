#include "changing.hpp"

#include "../handles.hpp"
#include "../input/modes.hpp"
#include "../input/resting_pointer.hpp"
#include "../notify.hpp"
#include "../server.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/transfer.hpp"
#include "../workspaces/workspace.hpp"
#include "layout_repair.hpp"
#include "lookup.hpp"
#include "output.hpp"
#include "power.hpp"
#include "rehome.hpp"

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

// The windows that the output shows go along.
static void move_output(vantore_output &o, int x, int y)
{
    const wlr_box before = output_layout_box(o);
    pin_outputs(*o.server->output_layout);
    wlr_output_layout_add(o.server->output_layout, o.wlr_output, x, y);
    if (o.current_ws == nullptr)
        return;
    for (auto &t : each<&vantore_toplevel::ws_link>(o.current_ws->toplevels))
        shift_window(t, {.x = x - before.x, .y = y - before.y});
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

void normalize_output_layout(vantore_server &server)
{
    std::vector<wlr_box> boxes;
    for (const auto &o : each<&vantore_output::link>(server.outputs))
        if (o.wlr_output->enabled)
            boxes.push_back(output_layout_box(o));
    const auto way = way_to_origin(boxes);
    if (!way)
        return;
    end_modes(server); // they remember places
    const double x = server.cursor->x, y = server.cursor->y; // it moves when its output does
    shift_outputs(*server.output_layout, *way);
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
        shift_window(t, *way);
    for (remembered_output &remembered : server.absence.outputs) {
        remembered.description.box.x += way->x;
        remembered.description.box.y += way->y;
    }
    wlr_cursor_warp(server.cursor, nullptr, x + way->x, y + way->y);
    outputs_rearranged(server);
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

// Takes one step after the other. Each call returns false if no step may follow.
class output_change
{
public:
    output_change(vantore_output &changed, std::string_view name) : o{changed}, token{name} {}
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
        if (wlr_output_mode *mode = mode_for(o, wish))
            wlr_output_state_set_mode(&state, mode);
        else
            wlr_output_state_set_custom_mode(&state, wish.width, wish.height, wish.refresh_hz * 1000);
        commit(o, state);
        return true;
    }
    bool operator()(const output_unhandled &unhandled)
    {
        wlr_log(WLR_INFO, "IPC output: unhandled '%s %s'", token.c_str(), unhandled.word.c_str());
        return true;
    }
    void settle();

private:
    vantore_output &o;
    std::string token;
    bool rehome = false; // an output has lost its workspace, or needs one
};

bool output_change::operator()(const output_disable &)
{
    vantore_server &server = *o.server;
    if (o.wlr_output->enabled && outputs_enabled_count(server) <= 1) {
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

void output_change::settle()
{
    vantore_server &server = *o.server;
    if (!g_applying_profile && o.wlr_output->enabled)
        deoverlap_moved(o);
    if (rehome)
        rehome_outputs(server);
    outputs_rearranged(server);
    if (!g_applying_profile)
        normalize_output_layout(server);
    settle_outputs(server);
}

void change_output(vantore_output &o, std::string_view token, std::span<const output_step> steps)
{
    output_change change{o, token};
    for (const output_step &step : steps)
        if (!std::visit(change, step))
            return;
    if (!steps.empty())
        change.settle();
}
