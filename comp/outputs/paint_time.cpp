#include "paint_time.hpp"

#include <algorithm>
#include <span>

static constexpr int64_t ms = 1'000'000;
static constexpr int64_t safety_margin = 2 * ms;
static constexpr int64_t least_delay = 1 * ms; // less is not worth a timer
static constexpr int least_samples = 4;
static constexpr int most_failures = 31;

int64_t ts_to_ns(const timespec &t)
{
    return int64_t{t.tv_sec} * 1'000'000'000 + t.tv_nsec;
}

static void record_failure(render_times &times)
{
    if (times.rt_n > 0)
        return;
    times.rt_fails++;
    times.rt_giveup = times.rt_giveup || times.rt_fails > most_failures;
}

void rt_record(render_times &times, int64_t dur_ns)
{
    if (dur_ns < 0)
        return record_failure(times);
    const int size = int(times.rt_hist.size());
    times.rt_fails = 0;
    times.rt_hist[size_t(times.rt_idx)] = dur_ns;
    times.rt_idx = (times.rt_idx + 1) % size;
    times.rt_n = std::min(times.rt_n + 1, size);
}

int64_t rt_predict(const render_times &times)
{
    if (times.rt_n < least_samples)
        return -1;
    return std::ranges::max(std::span{times.rt_hist}.first(size_t(times.rt_n))) + safety_margin;
}

int64_t paint_budget(int max_render_time, const render_times &times)
{
    if (max_render_time == 0)
        return -1;
    return max_render_time > 0 ? max_render_time * ms : rt_predict(times);
}

// Returns the first predicted blank after now. An idle output may have let many blanks pass.
static int64_t next_blank(int64_t last_present_ns, int64_t refresh_nsec, int64_t now_ns)
{
    const int64_t passed = std::max<int64_t>(now_ns - last_present_ns, 0) / refresh_nsec;
    return last_present_ns + (passed + 1) * refresh_nsec;
}

// A driver may date a presentation into the future. That would delay the picture by more than a period, so
// the output then paints at once.
int paint_delay_ms(int64_t last_present_ns, int64_t refresh_nsec, int64_t budget_ns, int64_t now_ns)
{
    if (last_present_ns == 0 || refresh_nsec <= 0 || budget_ns < 0 || budget_ns > refresh_nsec - least_delay)
        return 0;
    const int64_t delay = next_blank(last_present_ns, refresh_nsec, now_ns) - now_ns - budget_ns;
    return delay < least_delay || delay > refresh_nsec ? 0 : int(delay / ms);
}
