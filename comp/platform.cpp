// The real operating system behind g_platform.

#include "platform.hpp"

#include "spawn.hpp"
#include "wlr.hpp"

#include <csignal>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

static int64_t read_monotonic_clock()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

static int64_t read_wall_clock()
{
    return time(nullptr);
}

static uint32_t pick_below(uint32_t limit)
{
    return limit != 0 ? arc4random_uniform(limit) : 0;
}

static constexpr int worker_niceness = 10;

struct worker {
    void (*work)(void *data);
    void *data;
};

// A worker must not take processor time from the session. On Linux, the priority of a process's id is that of
// one thread.
static void *run_worker(void *raw)
{
    setpriority(PRIO_PROCESS, id_t(gettid()), worker_niceness);
    const std::unique_ptr<worker> w{static_cast<worker *>(raw)};
    w->work(w->data);
    return nullptr;
}

// The event loop's thread handles all signals, so a worker blocks them.
static bool begin_worker(void (*work)(void *data), void *data)
{
    auto w = std::make_unique<worker>(work, data);
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    pthread_t thread{};
    const bool started = pthread_create(&thread, nullptr, run_worker, w.get()) == 0;
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (!started)
        return false;
    [[maybe_unused]] const worker *owned_by_thread = w.release();
    pthread_detach(thread);
    return true;
}

static bool reap_child(pid_t child)
{
    return waitpid(child, nullptr, WNOHANG) == child;
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
    .wall_clock_s = read_wall_clock,
    .random_below = pick_below,
    .start_worker = begin_worker,
    .run_shell_line = fork_shell_line,
    .run_program = fork_program,
    .start_child = fork_child,
    .child_has_ended = reap_child,
    .send_signal = kill,
    .send_message = sendmsg,
    .arm_timer = wl_event_source_timer_update,
    .change_vt = wlr_session_change_vt,
    .has_render_timers = can_make_render_timer,
    .render_time = wlr_scene_timer_get_duration_ns,
    .client_pid = read_client_pid,
    .kernel_command_line = "/proc/cmdline",
    .layer_dump = "/tmp/vantore-layers.json",
    .log = nullptr,
};
