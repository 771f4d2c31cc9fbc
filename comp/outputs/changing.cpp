#include "changing.hpp"

#include "../handles.hpp"
#include "../input/modes.hpp"
#include "../notify.hpp"
#include "../server.hpp"
#include "../windows/maximized.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/transfer.hpp"
#include "../workspaces/workspace.hpp"
#include "layout_moves.hpp"
#include "layout_repair.hpp"
#include "lookup.hpp"
#include "mirror.hpp"
#include "output.hpp"
#include "output_token.hpp"
#include "power.hpp"
#include "rehome.hpp"

#include <utility>
#include <vector>

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
    bool operator()(const output_mirror &wish);
    bool operator()(const output_unhandled &unhandled)
    {
        wlr_log(WLR_INFO, "IPC output: unhandled '%s %s'", token.c_str(), unhandled.word.c_str());
        return true;
    }
    // Windows go along with outputs that have moved, also with those that the layout has moved.
    void carry_windows();
    void settle();

private:
    void mirror_window(const output_mirror &wish);
    void mirror_screen(const std::string &source);

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

void output_change::mirror_window(const output_mirror &wish)
{
    vantore_toplevel *t = toplevel_by_id(*o.server, wish.window);
    if (t != nullptr)
        return mirror_enable(o, *t);
    wlr_log(WLR_INFO, "IPC output mirror: no window '%s'", wish.source.c_str());
    config_notify("Mirror: no such window");
}

void output_change::mirror_screen(const std::string &source)
{
    const vantore_output *src = resolve_output_token(*o.server, source);
    if (src != nullptr)
        return mirror_enable_output(o, *src);
    wlr_log(WLR_INFO, "IPC output mirror: no screen '%s'", source.c_str());
    config_notify("Mirror: no such screen");
}

bool output_change::operator()(const output_mirror &wish)
{
    if (wish.kind == "off")
        mirror_disable(o, true);
    else if (wish.kind == "window")
        mirror_window(wish);
    else if (wish.kind == "output" || wish.kind == "screen")
        mirror_screen(wish.source);
    else
        wlr_log(WLR_INFO, "IPC output mirror: expected 'window <id>', 'output <name>' or 'off'");
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
    keep_one_lit(server);
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
