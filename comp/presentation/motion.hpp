// Where an animation stands at a time, as pure arithmetic. Times are in milliseconds since its start.
#pragma once

#include <cstdint>

// Starts fast and ends slowly. `t` runs from 0 to 1, and so does the result.
double ease_out_quad(double t);

inline constexpr int64_t open_fade_ms = 160;

// Returns the opacity of a window that has just opened.
float open_fade_opacity(int64_t elapsed_ms);
