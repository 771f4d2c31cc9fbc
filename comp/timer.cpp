#include "timer.hpp"

#include "platform.hpp"

void timer_remove(wl_event_source *source)
{
    g_platform.arm_timer(source, 0);
    wl_event_source_remove(source);
}

timer_source timer_create(wl_display *display, int (*fire)(void *data), void *data)
{
    return timer_source{wl_event_loop_add_timer(wl_display_get_event_loop(display), fire, data)};
}

void timer_arm(const timer_source &t, int ms)
{
    if (t != nullptr)
        g_platform.arm_timer(t.get(), ms);
}
