#include "memory_trim.hpp"

#include "server.hpp"
#include "timer.hpp"

#include <malloc.h>

static constexpr int windows_worth_a_trim = 16;
static constexpr int trim_delay_ms = 3000;

static int g_windows_gone;
static timer_source g_trim_timer;

static int trim(void *)
{
    g_windows_gone = 0;
    malloc_trim(0);
    return 0;
}

void memory_note_window_gone(vantore_server &server)
{
    if (server.shutting_down || ++g_windows_gone < windows_worth_a_trim)
        return;
    if (g_trim_timer == nullptr)
        g_trim_timer = timer_create(server.display, trim, nullptr);
    timer_arm(g_trim_timer, trim_delay_ms);
}

void memory_trim_reset()
{
    g_windows_gone = 0;
    g_trim_timer.reset();
}
