// When an output should start to paint, so that the picture is ready just before its next vertical blank.
// Times are nanoseconds of CLOCK_MONOTONIC.
#pragma once

#include <array>
#include <cstdint>
#include <ctime>

// What the last frames of an output cost.
struct render_times {
    std::array<int64_t, 16> rt_hist{}; // a ring
    int rt_idx = 0; // the next slot to write
    int rt_n = 0; // valid samples
    int rt_fails = 0; // unreadable timers in a row before the first sample
    bool rt_giveup = false; // there are no timers to read; for good
};

int64_t ts_to_ns(const timespec &t);

// Remembers how long a frame took; negative means that the timer could not be read. Those only count before
// the first sample: the 32nd in a row sets rt_giveup.
void rt_record(render_times &times, int64_t dur_ns);

// How long before the blank to start; -1 where too little is known. The worst of the samples and a margin.
int64_t rt_predict(const render_times &times);

// What the user wants: g_max_render_time in milliseconds, 0 for painting at once, negative for measuring.
// The result is the budget in nanoseconds, or -1 for painting at once.
int64_t paint_budget(int max_render_time, const render_times &times);

// Milliseconds to wait before painting, 0 for painting at once. `last_present_ns` is 0 before the first
// presentation, `refresh_nsec` not above 0 where the period is unknown.
int paint_delay_ms(int64_t last_present_ns, int64_t refresh_nsec, int64_t budget_ns, int64_t now_ns);
