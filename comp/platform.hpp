// What the process asks of its surroundings and tests must be able to answer themselves: programs to start,
// processes to find and kill, the clock and timers, the GPU's timer, the virtual terminal, the kernel's
// command line, the log's destination. The product never writes to these.
#pragma once

#include <cstdint>
#include <cstdio>
#include <sys/types.h>

struct wl_client;
struct wl_event_source;
struct wlr_renderer;
struct wlr_scene_timer;
struct wlr_session;

struct vnt_platform {
    // CLOCK_MONOTONIC in nanoseconds.
    int64_t (*monotonic_ns)();
    void (*run_shell_line)(const char *line);
    void (*run_program)(const char *const argv[]);
    int (*send_signal)(pid_t pid, int signal);
    int (*arm_timer)(wl_event_source *timer, int ms);
    bool (*change_vt)(wlr_session *session, unsigned vt);
    bool (*has_render_timers)(wlr_renderer *renderer);
    // What a measured frame cost in nanoseconds; negative when it can't be told.
    int64_t (*render_time)(wlr_scene_timer *timer);
    // The process at the other end of a client's socket.
    pid_t (*client_pid)(wl_client *client);
    const char *kernel_command_line;
    const char *layer_dump; // where the IPC command of that name writes
    // Null means stderr.
    FILE *log;
};

extern vnt_platform g_platform;
