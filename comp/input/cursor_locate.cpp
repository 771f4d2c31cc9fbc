#include "cursor_locate.hpp"

#include "../clock.hpp"
#include "../config/settings.hpp"
#include "../outputs/output.hpp"
#include "../presentation/animation.hpp"
#include "../server.hpp"
#include "../text.hpp"
#include "cursor_image.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

static constexpr double grow_ms = 140, shrink_ms = 190;
static constexpr int64_t hold_ms = 700;
static constexpr int last_step = 9;

wlr_xcursor_manager *cursor_locate_mgr(const vantore_server &server)
{
    wlr_xcursor_manager *step = server.xcursor_steps[size_t(server.cursor_locate_step)];
    return step != nullptr ? step : server.xcursor_mgr;
}

// Three times the usual size at the last step.
static uint32_t size_of_step(int step)
{
    return uint32_t(std::lround((1 + 2.0 * step / last_step) * cursor_size_for(g_cursor_size)));
}

static void cursor_locate_ensure_steps(vantore_server &server)
{
    const std::string_view theme = text_of(g_cursor_theme);
    for (int i = 1; i <= last_step; i++) {
        wlr_xcursor_manager *&manager = server.xcursor_steps[size_t(i)];
        if (manager != nullptr)
            continue;
        manager = wlr_xcursor_manager_create(theme.empty() ? nullptr : theme.data(), size_of_step(i));
        if (manager != nullptr)
            load_cursors_for_outputs(server, manager);
    }
}

void cursor_locate_drop_steps(vantore_server &server)
{
    const auto dropped = std::exchange(server.xcursor_steps, {});
    if (server.cursor_locate_step > 0)
        cursor_reassert(server); // the cursor holds one of them
    for (wlr_xcursor_manager *manager : dropped)
        if (manager != nullptr)
            wlr_xcursor_manager_destroy(manager);
}

// A shake while the cursor is large holds it longer; one while it shrinks brings it back at once.
static void cursor_locate_trigger(vantore_server &server)
{
    const int64_t now = mono_ms();
    server.cursor_locate_shrinking = false;
    server.cursor_locate_hold_until = now + hold_ms;
    if (!server.cursor_locate_on) {
        server.cursor_locate_on = true;
        server.cursor_locate_t0 = now;
    }
    anim_kick(server);
}

void cursor_shake_feed(vantore_server &server)
{
    if (!g_cursor_shake_magnify)
        return;
    if (server.seat->pointer_state.button_count > 0) {
        server.shake.shake_n = 0; // a drag is no shake
        return;
    }
    if (!shake_feed(server.shake, server.cursor->x, server.cursor->y, mono_ms()))
        return;
    cursor_locate_ensure_steps(server);
    cursor_locate_trigger(server);
}

// How much of the growth the cursor has, 0 to 1.
static double growth(vantore_server &server, int64_t now)
{
    const double t = std::min(1.0, double(now - server.cursor_locate_t0) / grow_ms);
    if (t >= 1 && now >= server.cursor_locate_hold_until) {
        server.cursor_locate_shrinking = true;
        server.cursor_locate_shrink_t0 = now;
    }
    return 1 - (1 - t) * (1 - t);
}

static double growth_left(vantore_server &server, int64_t now)
{
    const double p = std::min(1.0, double(now - server.cursor_locate_shrink_t0) / shrink_ms);
    if (p >= 1)
        server.cursor_locate_on = server.cursor_locate_shrinking = false;
    return (1 - p) * (1 - p);
}

bool cursor_locate_anim(vantore_server &server, int64_t now)
{
    const double e = server.cursor_locate_shrinking ? growth_left(server, now) : growth(server, now);
    const int step = std::clamp(int(std::lround(e * last_step)), 0, last_step);
    if (step != server.cursor_locate_step) {
        server.cursor_locate_step = step;
        cursor_reassert(server);
    }
    return server.cursor_locate_on;
}
