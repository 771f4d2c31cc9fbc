// Monotonic time in the units that callers need.
#pragma once

#include <cstdint>
#include <ctime>

// CLOCK_MONOTONIC in milliseconds, rounded down.
int64_t mono_ms();
// CLOCK_MONOTONIC as the library's calls take it.
timespec mono_timespec();
