#include "effect_plan.hpp"

#include "../windows/toplevel.hpp"

static constexpr int shadow_extent = 22, shadow_drop = 6; // pixels

static bool wants_shadow(const effect_state &t)
{
    return t.ssd && !t.fullscreen && !t.minimized && !t.snapped && !t.tiled && !t.stacked && !t.no_shadow;
}

static fx_corner_radii surface_corners(const effect_state &t, int radius, bool has_bar)
{
    if (!t.ssd) // the client shapes its window itself
        return corner_radii_none();
    return has_bar || t.stacked ? corner_radii_bottom(radius) : corner_radii_all(radius);
}

effect_plan plan_effects(const effect_state &t, const effect_settings &settings)
{
    const bool has_bar = t.ssd && !t.fullscreen && !t.stacked;
    const int radius = settings.allowed && !t.fullscreen && !t.no_round ? settings.corner_radius : 0;
    const bool can_dim = settings.allowed && settings.dim > 0;
    return {.has_bar = has_bar,
            .radius = radius,
            .surface = surface_corners(t, radius, has_bar),
            .bar = corner_radii_top(has_bar ? radius : 0),
            .tabs = corner_radii_top(t.stacked ? radius : 0),
            .can_dim = can_dim,
            .dim = can_dim && t.dimmed && !t.fullscreen && !t.minimized,
            .shadow = settings.allowed && settings.shadows && wants_shadow(t)};
}

wlr_box window_frame(int width, int height, bool has_bar)
{
    const int bar = has_bar ? titlebar_height : 0;
    return {.x = 0, .y = -bar, .width = width, .height = height + bar};
}

shadow_shape shadow_around(const wlr_box &frame, int radius)
{
    constexpr int rise = shadow_extent - shadow_drop; // from the frame's top to the shadow's
    return {.box{.x = frame.x - shadow_extent,
                 .y = frame.y - rise,
                 .width = frame.width + 2 * shadow_extent,
                 .height = frame.height + 2 * shadow_extent},
            .hole{.area{.x = shadow_extent, .y = rise, .width = frame.width, .height = frame.height},
                  .corners = corner_radii_all(radius)}};
}
