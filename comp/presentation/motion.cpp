#include "motion.hpp"

#include <algorithm>

static constexpr float first_opacity = 0.05F; // until the first tick

double ease_out_quad(double t)
{
    const double rest = 1 - t;
    return 1 - rest * rest;
}

double ease_out_cubic(double t)
{
    const double rest = 1 - t;
    return 1 - rest * rest * rest;
}

static double part(int64_t elapsed_ms, int64_t duration_ms)
{
    return double(std::clamp<int64_t>(elapsed_ms, 0, duration_ms)) / double(duration_ms);
}

float open_fade_opacity(int64_t elapsed_ms)
{
    return elapsed_ms <= 0 ? first_opacity : float(ease_out_quad(part(elapsed_ms, open_fade_ms)));
}

slide_offsets slide_at(int64_t elapsed_ms, int dir, int width)
{
    const int left = int((1 - ease_out_cubic(part(elapsed_ms, slide_ms))) * width);
    return {.from = (left - width) * dir, .to = left * dir};
}

zoom overview_opening_at(int64_t elapsed_ms)
{
    const double t = part(elapsed_ms, overview_zoom_ms);
    return {.opacity = float(ease_out_quad(t)), .part = ease_out_cubic(t)};
}

zoom overview_closing_at(int64_t elapsed_ms)
{
    const double t = part(elapsed_ms, overview_zoom_ms), rest = 1 - t;
    return {.opacity = float(rest * rest), .part = t * t * t};
}
