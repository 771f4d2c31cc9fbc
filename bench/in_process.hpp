// What an action costs in this process. The software renderer draws in threads of its own.
#pragma once

#include "median.hpp"

#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

inline constexpr int rounds = 21;

struct cost {
    double main_us, all_us; // CPU time of this thread, and of all
};

inline double cpu_us(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return double(now.tv_sec) * 1e6 + double(now.tv_nsec) / 1e3;
}

// The medians of many calls. `prepare` runs before each and is not measured.
template <class Prepare, class Action> cost measure(Prepare prepare, Action action)
{
    std::vector<double> main_us, all_us;
    for (int i = 0; i < rounds; i++) {
        prepare();
        const double main_before = cpu_us(CLOCK_THREAD_CPUTIME_ID),
                     all_before = cpu_us(CLOCK_PROCESS_CPUTIME_ID);
        action();
        main_us.push_back(cpu_us(CLOCK_THREAD_CPUTIME_ID) - main_before);
        all_us.push_back(cpu_us(CLOCK_PROCESS_CPUTIME_ID) - all_before);
    }
    return {.main_us = median(main_us), .all_us = median(all_us)};
}

inline void print(const std::string &what, const cost &c)
{
    printf("%s: %.0f microseconds of the main thread, %.0f of all\n", what.c_str(), c.main_us, c.all_us);
}
