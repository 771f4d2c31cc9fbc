#include "cursor_locate.hpp"

#include "../clock.hpp"
#include "../config/settings.hpp"
#include "../presentation/animation.hpp"
#include "../presentation/motion.hpp"
#include "../server.hpp"
#include "constraints.hpp"
#include "cursor_image.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

static constexpr double grow_ms = 140, shrink_ms = 190;
static constexpr int64_t hold_ms = 700;
static constexpr int last_step = 9;

wlr_xcursor_manager *cursor_locate_mgr(const vantore_server &server)
{
    wlr_xcursor_manager *step = server.locating.xcursor_steps[size_t(server.locating.cursor_locate_step)];
    return step != nullptr ? step : server.xcursor_mgr;
}

// The last step is three times the configured size.
static uint32_t size_of_step(int step)
{
    return uint32_t(std::lround((1 + 2.0 * step / last_step) * cursor_size_for(g_cursor_size)));
}

// A size that can't be loaded is shown in the usual size.
static void cursor_locate_ensure_steps(vantore_server &server)
{
    if (server.locating.xcursor_steps[last_step] != nullptr)
        return;
    for (int i = 1; i <= last_step; i++)
        if (wlr_xcursor_manager *&manager = server.locating.xcursor_steps[size_t(i)]; manager == nullptr)
            manager = load_cursor_theme(server, size_of_step(i));
    if (server.locating.cursor_locate_step > 0)
        cursor_reassert(server); // the steps were dropped while the cursor was large
}

void cursor_locate_drop_steps(vantore_server &server)
{
    const auto dropped = std::exchange(server.locating.xcursor_steps, {});
    if (server.locating.cursor_locate_step > 0)
        cursor_reassert(server); // the cursor holds one of them
    for (wlr_xcursor_manager *manager : dropped)
        if (manager != nullptr)
            wlr_xcursor_manager_destroy(manager);
}

// A shake while the cursor is large keeps it large for longer. A shake while it shrinks makes it large at
// once.
static void cursor_locate_trigger(vantore_server &server)
{
    const int64_t now = mono_ms();
    server.locating.cursor_locate_shrinking = false;
    server.locating.cursor_locate_hold_until = now + hold_ms;
    if (!server.locating.cursor_locate_on) {
        server.locating.cursor_locate_on = true;
        server.locating.cursor_locate_t0 = now;
    }
    anim_kick(server);
}

void cursor_shake_feed(vantore_server &server)
{
    if (!g_cursor_shake_magnify || pointer_is_constrained(server))
        return;
    if (server.seat->pointer_state.button_count > 0) {
        server.locating.shake.shake_n = 0; // a drag is no shake
        return;
    }
    if (!shake_feed(server.locating.shake, server.cursor->x, server.cursor->y, mono_ms()))
        return;
    cursor_locate_ensure_steps(server);
    cursor_locate_trigger(server);
}

// Returns the part of the full growth that the cursor has at a time, from 0 to 1. It is fast at first.
static double growth(double elapsed_ms)
{
    return ease_out_quad(std::min(1.0, elapsed_ms / grow_ms));
}

static double growth_left(double elapsed_ms)
{
    const double rest = 1 - std::min(1.0, elapsed_ms / shrink_ms);
    return rest * rest;
}

static double grow(vantore_server &server, int64_t now)
{
    const auto elapsed = double(now - server.locating.cursor_locate_t0);
    if (elapsed >= grow_ms && now >= server.locating.cursor_locate_hold_until) {
        server.locating.cursor_locate_shrinking = true;
        server.locating.cursor_locate_shrink_t0 = now;
    }
    return growth(elapsed);
}

static double shrink(vantore_server &server, int64_t now)
{
    const auto elapsed = double(now - server.locating.cursor_locate_shrink_t0);
    if (elapsed >= shrink_ms)
        server.locating.cursor_locate_on = server.locating.cursor_locate_shrinking = false;
    return growth_left(elapsed);
}

bool cursor_locate_anim(vantore_server &server, int64_t now)
{
    const double e = server.locating.cursor_locate_shrinking ? shrink(server, now) : grow(server, now);
    const int step = std::clamp(int(std::lround(e * last_step)), 0, last_step);
    if (step != server.locating.cursor_locate_step) {
        server.locating.cursor_locate_step = step;
        cursor_reassert(server);
    }
    return server.locating.cursor_locate_on;
}
