#include "pacing.hpp"

#include "../config/settings.hpp"
#include "../handles.hpp"
#include "../offscreen.hpp"
#include "../platform.hpp"
#include "../server.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/workspace.hpp"
#include "frame_callbacks.hpp"
#include "lookup.hpp"
#include "mirror.hpp"
#include "output.hpp"

#include <optional>

static bool is_measured()
{
    return g_max_render_time < 0;
}

static void tell_of_giving_up(const vantore_output &o)
{
    wlr_log(WLR_INFO,
            "output %s — GPU render timing unavailable, disabling render-time measurement (deadline "
            "scheduler stays in render-now mode)",
            output_name(o.wlr_output));
}

// Reads the time of the last frame when the next one starts. The GPU has finished by then, so nobody waits
// for it.
static void read_measurement(vantore_output &o)
{
    if (!o.rt_pending)
        return;
    const bool had_given_up = o.times.rt_giveup;
    rt_record(o.times, g_platform.render_time(&o.rt));
    pacing_drop_measurement(o);
    if (o.times.rt_giveup && !had_given_up)
        tell_of_giving_up(o);
}

void pacing_drop_measurement(vantore_output &o)
{
    if (o.rt_pending)
        wlr_scene_timer_finish(&o.rt);
    o.rt_pending = false;
}

// Keeps the measurement only if the commit rendered something. Otherwise it says nothing about the cost of
// rendering.
static void commit_measured(vantore_output &o)
{
    o.rt = {};
    wlr_scene_output_state_options options{};
    options.timer = &o.rt;
    const bool committed = wlr_scene_output_commit(o.scene_output, &options);
    o.rt_pending = committed && o.rt.render_timer != nullptr;
    if (!o.rt_pending)
        wlr_scene_timer_finish(&o.rt);
}

// If the driver can't tear at the moment, the frame is shown in step with the blank.
static void commit_tearing(vantore_output &o)
{
    if (!wlr_scene_output_needs_frame(o.scene_output))
        return;
    output_state state;
    state.tearing_page_flip = true;
    if (!wlr_scene_output_build_state(o.scene_output, &state, nullptr))
        return;
    if (!wlr_output_test_state(o.wlr_output, &state))
        state.tearing_page_flip = false;
    wlr_output_commit_state(o.wlr_output, &state);
}

// Frame callbacks go out whether or not the commit worked, so that no client waits for ever.
static void output_do_repaint(vantore_output &o)
{
    read_measurement(o);
    mirror_before_paint(o);
    std::optional<composition_lock> composed;
    if (is_mirrored(o))
        composed.emplace(o.wlr_output);
    if (output_wants_tearing(o))
        commit_tearing(o);
    else if (is_measured() && !o.times.rt_giveup)
        commit_measured(o);
    else
        wlr_scene_output_commit(o.scene_output, nullptr);
    send_frame_callbacks(o);
    mirror_wake_for_source(o);
}

static int output_frame_timer(void *data)
{
    auto &o = *static_cast<vantore_output *>(data);
    if (o.wlr_output->enabled) // it may have been turned off meanwhile
        output_do_repaint(o);
    return 0;
}

void pacing_start(vantore_output &o)
{
    static constexpr int64_t ns_times_mhz = 1'000'000'000'000;
    o.frame_timer = timer_create(o.server->display, output_frame_timer, &o);
    if (o.wlr_output->refresh > 0)
        o.refresh_nsec = ns_times_mhz / o.wlr_output->refresh;
    // Ask the renderer, because a later frame without a timer proves nothing: it may have had nothing to
    // render.
    o.times.rt_giveup = !g_platform.has_render_timers(o.server->renderer);
    if (o.times.rt_giveup)
        tell_of_giving_up(o);
}

static int delay_of_paint(const vantore_output &o)
{
    const int64_t budget = paint_budget(g_max_render_time, o.times);
    if (o.frame_timer == nullptr || budget < 0 || output_wants_tearing(o))
        return 0;
    return paint_delay_ms(o.last_present_ns, o.refresh_nsec, budget, g_platform.monotonic_ns());
}

// A frame event that arrives before the timer fires rearms the timer, or disarms it and paints at once.
void output_frame(vantore_output &o)
{
    const int delay = delay_of_paint(o);
    timer_arm(o.frame_timer, delay);
    if (delay == 0)
        output_do_repaint(o);
}

// Under adaptive sync the event has no period, and the last known one stays.
void output_present(vantore_output &o, const wlr_output_event_present *event)
{
    if (!event->presented)
        return;
    o.last_present_ns = ts_to_ns(event->when);
    if (event->refresh > 0)
        o.refresh_nsec = event->refresh;
}

static vantore_toplevel *fullscreen_window_on(const vantore_output &o)
{
    for (auto &t : each<&vantore_toplevel::link>(o.server->toplevels))
        if (t.fullscreen && t.workspace != nullptr && t.workspace->output == &o)
            return &t;
    return nullptr;
}

bool output_wants_tearing(const vantore_output &o)
{
    const vantore_server &server = *o.server;
    if (!g_allow_tearing || server.tearing_mgr == nullptr)
        return false;
    const vantore_toplevel *t = fullscreen_window_on(o);
    wlr_surface *surface = t != nullptr ? tl_surface(*t) : nullptr;
    if (surface == nullptr)
        return false;
    if (wlr_tearing_control_manager_v1_surface_hint_from_surface(server.tearing_mgr, surface) ==
        WP_TEARING_CONTROL_V1_PRESENTATION_HINT_ASYNC)
        return true;
    return g_game_tearing && server.content_type_mgr != nullptr &&
           wlr_surface_get_content_type_v1(server.content_type_mgr, surface) == WP_CONTENT_TYPE_V1_TYPE_GAME;
}
