// Detects a shaken pointer, which travels far and gets nowhere. The caller passes the time, so nothing here
// reads a clock.
#pragma once

#include <array>
#include <cstdint>

struct shake_sample {
    double x = 0, y = 0; // layout coordinates
    int64_t t = 0; // ms
};

// A ring buffer of the pointer's recent positions.
struct shake_history {
    std::array<shake_sample, 160> shake_hist{};
    int shake_n = 0; // samples held
    int shake_head = 0; // the oldest
};

// Notes the pointer's position. Returns true when the pointer is being shaken, and then forgets all
// positions. The time must not go backwards.
bool shake_feed(shake_history &history, double x, double y, int64_t now_ms);
