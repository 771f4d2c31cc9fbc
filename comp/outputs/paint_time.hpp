// Works out when an output should start to paint, so that the picture is ready just before its next vertical
// blank. Times are nanoseconds of CLOCK_MONOTONIC.
#pragma once

#include <array>
#include <cstdint>
#include <ctime>

// How long the last frames of an output took.
struct render_times {
    std::array<int64_t, 16> rt_hist{}; // a ring
    int rt_idx = 0; // the next slot to write
    int rt_n = 0; // valid samples
    int rt_fails = 0; // unreadable timers in a row before the first sample
    bool rt_giveup = false; // set for good once timers can't be read
};

int64_t ts_to_ns(const timespec &t);

// Remembers how long a frame took; a negative time means that the timer could not be read. Such failures
// count only before the first sample, and the 32nd in a row sets rt_giveup.
void rt_record(render_times &times, int64_t dur_ns);

// Returns how long before the blank to start: the longest sample plus a margin, or -1 if there are too few
// samples.
int64_t rt_predict(const render_times &times);

// Takes the user's g_max_render_time: milliseconds, 0 to paint at once, negative to measure. Returns the
// budget in nanoseconds, or -1 to paint at once.
int64_t paint_budget(int max_render_time, const render_times &times);

// Returns the milliseconds to wait before painting, or 0 to paint at once. `last_present_ns` is 0 before the
// first presentation. `refresh_nsec` is 0 or less if the period is unknown.
int paint_delay_ms(int64_t last_present_ns, int64_t refresh_nsec, int64_t budget_ns, int64_t now_ns);
