#include "clock.hpp"

#include "platform.hpp"

int64_t mono_ms()
{
    return g_platform.monotonic_ns() / 1'000'000;
}

timespec mono_timespec()
{
    const int64_t ns = g_platform.monotonic_ns();
    return {.tv_sec = ns / 1'000'000'000, .tv_nsec = ns % 1'000'000'000};
}
