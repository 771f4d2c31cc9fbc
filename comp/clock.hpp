// Monotonic time in the units that callers need.
#pragma once

#include <cstdint>
#include <ctime>

// CLOCK_MONOTONIC in milliseconds, rounded down.
int64_t mono_ms();
// CLOCK_MONOTONIC in the form that the library's functions take.
timespec mono_timespec();
