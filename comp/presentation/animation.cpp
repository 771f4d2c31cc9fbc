#include "animation.hpp"

#include "../clock.hpp"
#include "../input/cursor_locate.hpp"
#include "../server.hpp"

static constexpr int first_tick_ms = 1, tick_ms = 16;

static int anim_tick(void *data)
{
    auto &server = *static_cast<vantore_server *>(data);
    if (server.shutting_down)
        return 0;
    const bool more = server.locating.cursor_locate_on && cursor_locate_anim(server, mono_ms());
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
