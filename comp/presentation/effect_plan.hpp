// Which effects a window gets, and where they lie. All of it follows from the window's state, its size and
// the settings. Boxes are relative to the window's content.
#pragma once

#include "../wlr.hpp"

struct effect_state {
    bool ssd = false, fullscreen = false, minimized = false, snapped = false;
    bool tiled = false, stacked = false;
    bool dimmed = false; // without the focus
    bool no_shadow = false, no_round = false;
};

struct effect_settings {
    bool allowed = false; // of effects altogether
    bool shadows = false;
    int corner_radius = 0; // pixels
    float dim = 0; // how dark windows without the focus are; 0 for not at all
};

struct effect_plan {
    bool has_bar = false; // the title bar carries the window's top corners
    int radius = 0; // of the outline of the window with its bar
    fx_corner_radii surface{}, bar{}, tabs{};
    bool can_dim = false; // the settings darken windows, if not this one now
    bool dim = false;
    bool shadow = false;
};

effect_plan plan_effects(const effect_state &t, const effect_settings &settings);

// Returns what a window with content of this size covers, together with its title bar.
wlr_box window_frame(int width, int height, bool has_bar);

inline constexpr float shadow_sigma = 22;

// The shadow extends beyond the frame and lies a little lower. The frame itself is cut out of it, so that a
// translucent window does not show it.
struct shadow_shape {
    wlr_box box;
    clipped_region hole; // relative to `box`
};
shadow_shape shadow_around(const wlr_box &frame, int radius);
