#include "animation.hpp"

#include "../clock.hpp"
#include "../input/cursor_locate.hpp"
#include "../input/overview_zoom.hpp"
#include "../server.hpp"
#include "open_fade.hpp"
#include "slide.hpp"

static constexpr int first_tick_ms = 1, tick_ms = 16;

static bool cursor_locate_advance(vantore_server &server, int64_t now)
{
    return server.locating.cursor_locate_on && cursor_locate_anim(server, now);
}

// Each advances what it animates to a time of mono_ms. It returns whether it needs another tick.
static constexpr bool (*animations[])(vantore_server &server, int64_t now) = {
    anim_open_advance,
    slide_advance,
    overview_zoom_advance,
    cursor_locate_advance,
};

static int anim_tick(void *data)
{
    auto &server = *static_cast<vantore_server *>(data);
    if (server.shutting_down)
        return 0;
    const int64_t now = mono_ms();
    bool more = false;
    for (auto *advance : animations)
        more |= advance(server, now);
    if (more)
        timer_arm(server.anim_timer, tick_ms);
    return 0;
}

void anim_start(vantore_server &server)
{
    server.anim_timer = timer_create(server.display, anim_tick, &server);
}

void anim_stop(vantore_server &server)
{
    server.anim_timer.reset();
}

void anim_kick(vantore_server &server)
{
    timer_arm(server.anim_timer, first_tick_ms);
}
