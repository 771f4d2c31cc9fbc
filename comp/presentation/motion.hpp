// Where an animation stands at a time, as pure arithmetic. Times are in milliseconds since its start.
#pragma once

#include <cstdint>

// Curves that start fast and end slowly. `t` runs from 0 to 1, and so does the result.
double ease_out_quad(double t);
double ease_out_cubic(double t);

inline constexpr int64_t open_fade_ms = 160, slide_ms = 150, overview_zoom_ms = 150;

// Returns the opacity of a window that has just opened.
float open_fade_opacity(int64_t elapsed_ms);

// How far two workspaces are from their place, in layout pixels.
struct slide_offsets {
    int from, to; // of the one that leaves and the one that arrives
};

// `dir` is 1 when the workspaces move to the left, and -1 when they move to the right.
slide_offsets slide_at(int64_t elapsed_ms, int dir, int width);

// How the overview shows its pictures on their way.
struct zoom {
    float opacity;
    double part; // of the way, from 0 to 1
};

zoom overview_opening_at(int64_t elapsed_ms);
zoom overview_closing_at(int64_t elapsed_ms);
