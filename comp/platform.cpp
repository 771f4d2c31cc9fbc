// The real operating system behind g_platform.

#include "platform.hpp"

#include "spawn.hpp"

#include <csignal>
#include <ctime>

static int64_t read_monotonic_clock()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

vnt_platform g_platform{
    .monotonic_ns = read_monotonic_clock,
    .run_shell_line = fork_shell_line,
    .send_signal = kill,
    .kernel_command_line = "/proc/cmdline",
    .log = nullptr,
};
