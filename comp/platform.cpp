// The real operating system behind g_platform.

#include "platform.hpp"

#include "spawn.hpp"
#include "wlr.hpp"

#include <csignal>
#include <ctime>

static int64_t read_monotonic_clock()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

static pid_t read_client_pid(wl_client *client)
{
    pid_t pid = 0;
    wl_client_get_credentials(client, &pid, nullptr, nullptr);
    return pid;
}

static bool can_make_render_timer(wlr_renderer *renderer)
{
    wlr_render_timer *timer = wlr_render_timer_create(renderer);
    if (timer == nullptr)
        return false;
    wlr_render_timer_destroy(timer);
    return true;
}

vnt_platform g_platform{
    .monotonic_ns = read_monotonic_clock,
    .run_shell_line = fork_shell_line,
    .run_program = fork_program,
    .send_signal = kill,
    .arm_timer = wl_event_source_timer_update,
    .change_vt = wlr_session_change_vt,
    .has_render_timers = can_make_render_timer,
    .render_time = wlr_scene_timer_get_duration_ns,
    .client_pid = read_client_pid,
    .kernel_command_line = "/proc/cmdline",
    .layer_dump = "/tmp/vantore-layers.json",
    .log = nullptr,
};
