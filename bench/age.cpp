// Measures how old a client's content is when it is first shown, for each setting of frame pacing. This is a
// replay with a clock of its own. The client redraws at random moments, either alone on its output or next to
// a client that redraws with every frame. The product's own functions (outputs/paint_time) decide when to
// paint; the output and the GPU are simulated here. Blanks come at exact multiples of the period, and a
// picture is shown at the first blank after it has been rendered.

#include "outputs/paint_time.hpp"
#include "render_times.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <random>
#include <span>
#include <vector>

namespace
{

constexpr int64_t ms = 1'000'000, never = INT64_MAX;
constexpr double mean_gap = 1.5; // periods between two commits of the client
constexpr int commits_a_seed = 20'000;
constexpr std::array<unsigned, 5> seeds{1, 2, 3, 4, 5};

struct outcome {
    std::vector<double> ages_ms; // of the commits that were shown
    std::vector<double> all_ages_ms; // also of commits that a newer one replaced unpainted
    int pictures = 0;
    int missed = 0; // pictures that were not ready for the blank that they were begun for
    int missed_waited = 0; // those of them that the budget held back instead of painting them at once
};

// An output and the client's commits. Like an output of the library, it sends no frame event between its own
// commit and the blank that shows this commit. At any other time, a change sends a frame event at once.
struct output {
    std::span<const int64_t> commits; // times, ascending
    // Render times. The number of the blank selects one, so that all settings meet the same times.
    std::span<const int> costs_us;
    int64_t period;
    int max_render_time;
    bool is_busy; // something else changes with every frame

    size_t arrived = 0; // commits that the client has made
    size_t painted = 0; // those of them that are part of a picture
    int64_t timer = never, blank = never; // the next events; there is a blank only if a picture waits for it
    int64_t last_present_ns = 0;
    int64_t measured_ns = -1; // the last picture's render time, read at the next repaint
    render_times times;
    outcome result;
};

int64_t blank_after(const output &o, int64_t now)
{
    return (now / o.period + 1) * o.period;
}

void read_measurement(output &o)
{
    if (o.measured_ns >= 0 && o.max_render_time < 0)
        rt_record(o.times, o.measured_ns);
    o.measured_ns = -1;
}

void show_commits(output &o)
{
    const auto age_ms = [&](int64_t commit) { return double(o.blank - commit) / double{ms}; };
    if (o.painted < o.arrived)
        o.result.ages_ms.push_back(age_ms(o.commits[o.arrived - 1]));
    for (; o.painted < o.arrived; o.painted++)
        o.result.all_ages_ms.push_back(age_ms(o.commits[o.painted]));
}

void repaint(output &o, int64_t now, bool waited)
{
    o.timer = never;
    read_measurement(o);
    if (o.painted == o.arrived && !o.is_busy)
        return;
    const int64_t aim = blank_after(o, now);
    o.measured_ns = int64_t{o.costs_us[size_t(aim / o.period) % o.costs_us.size()]} * 1000;
    o.blank = blank_after(o, now + o.measured_ns - 1);
    const int missed = o.blank > aim ? 1 : 0;
    o.result.pictures++;
    o.result.missed += missed;
    o.result.missed_waited += waited ? missed : 0;
    show_commits(o);
}

void frame_event(output &o, int64_t now)
{
    const int64_t budget = paint_budget(o.max_render_time, o.times);
    const int delay = paint_delay_ms(o.last_present_ns, o.period, budget, now);
    o.timer = now + delay * ms;
    if (delay == 0)
        repaint(o, now, false);
}

void blank_event(output &o, int64_t now)
{
    o.last_present_ns = now;
    o.blank = never;
    frame_event(o, now);
}

void commit_event(output &o, int64_t now)
{
    o.arrived++;
    if (o.blank == never)
        frame_event(o, now);
}

// Runs until the last commit has been painted.
void play(output &o)
{
    while (o.painted < o.commits.size()) {
        const int64_t commit = o.arrived < o.commits.size() ? o.commits[o.arrived] : never;
        const int64_t now = std::min({commit, o.timer, o.blank});
        if (now == o.blank)
            blank_event(o, now);
        else if (now == o.timer)
            repaint(o, now, true);
        else
            commit_event(o, now);
    }
}

// Exponentially distributed gaps. The distribution of the standard library may differ between
// implementations, so this computes its own.
std::vector<int64_t> random_commits(unsigned seed, int64_t period)
{
    std::mt19937_64 random{seed};
    std::vector<int64_t> times;
    double at = double(period);
    for (int i = 0; i < commits_a_seed; i++) {
        const double uniform = (double(random() >> 11) + 0.5) * 0x1p-53;
        at += -std::log(uniform) * mean_gap * double(period);
        times.push_back(int64_t(at));
    }
    return times;
}

void add(outcome &all, const outcome &one)
{
    all.ages_ms.insert(all.ages_ms.end(), one.ages_ms.begin(), one.ages_ms.end());
    all.all_ages_ms.insert(all.all_ages_ms.end(), one.all_ages_ms.begin(), one.all_ages_ms.end());
    all.pictures += one.pictures;
    all.missed += one.missed;
    all.missed_waited += one.missed_waited;
}

struct scene {
    const char *name;
    std::span<const int> costs_us;
    bool is_busy;
};

// The results of all seeds together.
outcome replay(const scene &what, int64_t period, int max_render_time)
{
    outcome all;
    for (const unsigned seed : seeds) {
        const std::vector<int64_t> commits = random_commits(seed, period);
        output o{.commits = commits,
                 .costs_us = what.costs_us,
                 .period = period,
                 .max_render_time = max_render_time,
                 .is_busy = what.is_busy};
        play(o);
        add(all, o.result);
    }
    std::ranges::sort(all.ages_ms);
    std::ranges::sort(all.all_ages_ms);
    return all;
}

double quantile(const std::vector<double> &sorted, double q)
{
    return sorted[size_t(q * double(sorted.size() - 1))];
}

struct setting {
    const char *name;
    int max_render_time;
};

// The others are compared with the first one.
constexpr std::array<setting, 6> settings{
    {{"off", 0}, {"auto", -1}, {"2 ms", 2}, {"5 ms", 5}, {"8 ms", 8}, {"12 ms", 12}}};

void print_row(const char *name, const outcome &all, double median_when_off)
{
    const double middle = quantile(all.ages_ms, 0.5);
    const auto per_1000 = [&](int pictures) { return 1000.0 * pictures / all.pictures; };
    printf("  %-6s %8.1f %8.1f %8.1f %+7.0f%% %14.1f %10.1f %10.1f\n", name, middle,
           quantile(all.ages_ms, 0.9), all.ages_ms.back(), 100 * (middle / median_when_off - 1),
           quantile(all.all_ages_ms, 0.5), per_1000(all.missed), per_1000(all.missed_waited));
}

void print_table(const scene &what, int hertz)
{
    const int64_t period = 1'000'000'000 / hertz;
    printf("\n%d Hz, %s:\n  %-6s %8s %8s %8s %8s %14s %10s %10s\n", hertz, what.name, "", "median", "p90",
           "max", "to off", "all's median", "missed", "waited");
    double off = 0;
    for (const setting &s : settings) {
        const outcome all = replay(what, period, s.max_render_time);
        if (s.max_render_time == 0)
            off = quantile(all.ages_ms, 0.5);
        print_row(s.name, all, off);
    }
}

const std::array<scene, 4> scenes{{
    {"light pictures, alone on its output", light_render_times_us, false},
    {"heavy pictures, alone on its output", heavy_render_times_us, false},
    {"light pictures, beside a client that redraws with every frame", light_render_times_us, true},
    {"heavy pictures, beside a client that redraws with every frame", heavy_render_times_us, true},
}};

} // namespace

int main()
{
    printf(
        "From a client's commit to the predicted blank that first shows it, in milliseconds: a simulated\n"
        "replay through the pure decision, %zu times %d commits at random moments, %.1f periods apart on\n"
        "average. Commits that a newer one replaced before they were painted count for all's median only.\n"
        "Missed: of 1000 pictures, those that were not ready for the blank that was next when they were\n"
        "begun; waited: those of them that the budget had held back.\n",
        seeds.size(), commits_a_seed, mean_gap);
    for (const int hertz : {60, 144})
        for (const scene &what : scenes)
            print_table(what, hertz);
}
