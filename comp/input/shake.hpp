// Whether the pointer is shaken: it travels far and gets nowhere. Time is given, so that nothing here reads a
// clock.
#pragma once

#include <array>
#include <cstdint>

struct shake_sample {
    double x = 0, y = 0; // layout coordinates
    int64_t t = 0; // ms
};

// A ring of where the pointer has lately been.
struct shake_history {
    std::array<shake_sample, 160> shake_hist{};
    int shake_n = 0; // samples held
    int shake_head = 0; // the oldest
};

// Notes where the pointer is. True when it is being shaken; then what was noted is forgotten. The time must
// not go backwards.
bool shake_feed(shake_history &history, double x, double y, int64_t now_ms);
