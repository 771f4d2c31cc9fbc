#include "shake.hpp"

#include <algorithm>
#include <cmath>

static constexpr int64_t memory_ms = 1000;
static constexpr int64_t least_interval_ms = 8; // faster mice would only add work
static constexpr int fewest_samples = 4;
static constexpr double least_extent = 100, least_path = 200, least_ratio = 4; // pixels; path / extent

// `i` counts from the oldest sample.
static size_t slot(const shake_history &history, int i)
{
    return size_t(history.shake_head + i) % history.shake_hist.size();
}

static const shake_sample &sample(const shake_history &history, int i)
{
    return history.shake_hist[slot(history, i)];
}

static void drop_oldest(shake_history &history)
{
    history.shake_head = int(slot(history, 1));
    history.shake_n--;
}

static void add(shake_history &history, const shake_sample &added)
{
    if (history.shake_n == int(history.shake_hist.size()))
        drop_oldest(history);
    history.shake_hist[slot(history, history.shake_n)] = added;
    history.shake_n++;
}

static bool is_shaken(const shake_history &history)
{
    double path = 0;
    shake_sample least = sample(history, 0), most = least;
    for (int i = 1; i < history.shake_n; i++) {
        const shake_sample &from = sample(history, i - 1), &to = sample(history, i);
        path += std::hypot(to.x - from.x, to.y - from.y);
        least = {.x = std::min(least.x, to.x), .y = std::min(least.y, to.y)};
        most = {.x = std::max(most.x, to.x), .y = std::max(most.y, to.y)};
    }
    const double diag = std::hypot(most.x - least.x, most.y - least.y);
    return diag >= least_extent && path >= least_path && path / diag >= least_ratio;
}

bool shake_feed(shake_history &history, double x, double y, int64_t now_ms)
{
    while (history.shake_n > 0 && sample(history, 0).t < now_ms - memory_ms)
        drop_oldest(history);
    if (history.shake_n > 0 && now_ms - sample(history, history.shake_n - 1).t < least_interval_ms)
        return false;
    add(history, {.x = x, .y = y, .t = now_ms});
    if (history.shake_n < fewest_samples || !is_shaken(history))
        return false;
    history.shake_n = 0;
    return true;
}
