// What the process asks of its surroundings and tests must be able to answer themselves: programs to start,
// children and workers, processes to find and kill, the clocks and timers, chance, the GPU's timer, the
// virtual terminal, the kernel's command line, the log's destination. The product never writes to these.
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
    // Seconds since 1970, as the wall clock has them: they may jump.
    int64_t (*wall_clock_s)();
    // Any of 0 to limit - 1; 0 for a limit of 0.
    uint32_t (*random_below)(uint32_t limit);
    // Runs `work` on a thread of its own, which nobody waits for. False when there can be none: then it never
    // runs.
    bool (*start_worker)(void (*work)(void *data), void *data);
    void (*run_shell_line)(const char *line);
    void (*run_program)(const char *const argv[]);
    // Starts a shell line as a direct child in a session of its own; its process, or -1 without one.
    pid_t (*start_child)(const char *line);
    // Whether that child has ended; it is reaped then, and a second call says no.
    bool (*child_has_ended)(pid_t child);
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
