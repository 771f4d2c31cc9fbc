// The system functions and paths that tests must be able to replace. They start programs, children and
// workers, find and signal processes, send to sockets, read clocks and arm timers, pick random numbers,
// measure the GPU, switch the virtual terminal, and say where the kernel's command line and the log are. Only
// tests write to this record.
#pragma once

#include <cstdint>
#include <cstdio>
#include <sys/types.h>

struct msghdr;
struct wl_client;
struct wl_event_source;
struct wlr_renderer;
struct wlr_scene_timer;
struct wlr_session;

struct vnt_platform {
    // CLOCK_MONOTONIC in nanoseconds.
    int64_t (*monotonic_ns)();
    // Seconds since 1970 by the wall clock, which may jump.
    int64_t (*wall_clock_s)();
    // Any number from 0 to limit - 1, or 0 if the limit is 0.
    uint32_t (*random_below)(uint32_t limit);
    // Runs `work` on a thread of its own with low priority, which nobody waits for. Returns false without
    // running it if no thread can be made.
    bool (*start_worker)(void (*work)(void *data), void *data);
    void (*run_shell_line)(const char *line);
    void (*run_program)(const char *const argv[]);
    // Starts a shell line as a direct child in a session of its own. Returns its process, or -1 on failure.
    pid_t (*start_child)(const char *line);
    // Returns true once, when the child has ended, and reaps it.
    bool (*child_has_ended)(pid_t child);
    int (*send_signal)(pid_t pid, int signal);
    // Sends to a program at the IPC socket.
    ssize_t (*send_message)(int fd, const msghdr *message, int flags);
    int (*arm_timer)(wl_event_source *timer, int ms);
    bool (*change_vt)(wlr_session *session, unsigned vt);
    bool (*has_render_timers)(wlr_renderer *renderer);
    // What a measured frame cost in nanoseconds, or a negative number if that is not known.
    int64_t (*render_time)(wlr_scene_timer *timer);
    // The process at the other end of a client's socket.
    pid_t (*client_pid)(wl_client *client);
    const char *kernel_command_line;
    const char *layer_dump; // where the IPC command dump-layers writes
    // Null means stderr.
    FILE *log;
};

extern vnt_platform g_platform;
