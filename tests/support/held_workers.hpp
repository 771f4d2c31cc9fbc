// Workers that do not run when they are started, but when the test wants.
#pragma once

#include "platform.hpp"

#include <utility>
#include <vector>

namespace test
{

struct held_worker {
    void (*work)(void *data);
    void *data;
};
inline std::vector<held_worker> g_held;

inline void hold_workers()
{
    g_platform.start_worker = [](void (*work)(void *), void *data) {
        g_held.push_back({work, data});
        return true;
    };
}

// Runs them on the test's own thread.
inline void run_workers()
{
    for (const held_worker &w : std::exchange(g_held, {}))
        w.work(w.data);
}

} // namespace test
