// Which effects a window gets, and where they lie.

#include "presentation/effect_plan.hpp"

#include <array>
#include <gtest/gtest.h>

namespace
{

constexpr effect_settings all_on{.allowed = true, .shadows = true, .corner_radius = 10, .dim = 0.5F};
constexpr effect_state floating{.ssd = true};

using corners = std::array<int, 4>; // clockwise from the top left

corners of(const fx_corner_radii &r)
{
    return {r.top_left, r.top_right, r.bottom_right, r.bottom_left};
}

constexpr corners square{0, 0, 0, 0}, top{10, 10, 0, 0}, bottom{0, 0, 10, 10};

struct look {
    const char *name;
    effect_state state;
    corners surface, bar, tabs;
    bool shadow, dim_without_focus;
};

constexpr look looks[]{
    {"floating", floating, bottom, top, square, true, true},
    {"tiled", {.ssd = true, .tiled = true}, bottom, top, square, false, true},
    {"snapped", {.ssd = true, .snapped = true}, bottom, top, square, false, true},
    {"in a stack", {.ssd = true, .tiled = true, .stacked = true}, bottom, square, top, false, true},
    {"in a stack, floating", {.ssd = true, .stacked = true}, bottom, square, top, false, true},
    {"decorated by its client", {}, square, square, square, false, true},
    {"its client's, in a stack", {.tiled = true, .stacked = true}, square, square, top, false, true},
    {"fullscreen", {.ssd = true, .fullscreen = true}, square, square, square, false, false},
    {"minimized", {.ssd = true, .minimized = true}, bottom, top, square, false, false},
    {"without rounding", {.ssd = true, .no_round = true}, square, square, square, true, true},
    {"without shadow", {.ssd = true, .no_shadow = true}, bottom, top, square, false, true},
};

TEST(plan_effects, gives_each_kind_of_window_its_own)
{
    for (look l : looks) {
        for (const bool dimmed : {false, true}) {
            l.state.dimmed = dimmed;
            const effect_plan plan = plan_effects(l.state, all_on);
            EXPECT_EQ(of(plan.surface), l.surface) << l.name;
            EXPECT_EQ(of(plan.bar), l.bar) << l.name;
            EXPECT_EQ(of(plan.tabs), l.tabs) << l.name;
            EXPECT_EQ(plan.shadow, l.shadow) << l.name;
            EXPECT_EQ(plan.dim, l.dim_without_focus && dimmed) << l.name;
        }
    }
}

TEST(plan_effects, gives_the_outline_a_radius_whoever_draws_the_title_bar)
{
    EXPECT_EQ(plan_effects({}, all_on).radius, 10);
    EXPECT_EQ(plan_effects(floating, all_on).radius, 10);
    EXPECT_EQ(plan_effects({.fullscreen = true}, all_on).radius, 0);
    EXPECT_EQ(plan_effects({.no_round = true}, all_on).radius, 0);
}

TEST(plan_effects, gives_nobody_anything_where_effects_are_not_allowed)
{
    effect_settings settings = all_on;
    settings.allowed = false;
    const effect_plan plan = plan_effects({.ssd = true, .dimmed = true}, settings);
    EXPECT_EQ(of(plan.surface), square);
    EXPECT_EQ(of(plan.bar), square);
    EXPECT_EQ(plan.radius, 0);
    EXPECT_FALSE(plan.can_dim || plan.dim || plan.shadow);
    EXPECT_TRUE(plan.has_bar);
}

TEST(plan_effects, follows_each_setting_alone)
{
    effect_settings settings = all_on;
    settings.shadows = false;
    EXPECT_FALSE(plan_effects(floating, settings).shadow);
    settings = all_on;
    settings.corner_radius = 0;
    EXPECT_EQ(of(plan_effects(floating, settings).surface), square);
    EXPECT_TRUE(plan_effects(floating, settings).shadow);
    settings = all_on;
    settings.dim = 0;
    EXPECT_FALSE(plan_effects({.ssd = true, .dimmed = true}, settings).can_dim);
}

void expect_box(const wlr_box &actual, const wlr_box &expected)
{
    EXPECT_TRUE(wlr_box_equal(&actual, &expected))
        << actual.x << ',' << actual.y << ' ' << actual.width << 'x' << actual.height;
}

TEST(window_frame, includes_the_title_bar)
{
    expect_box(window_frame(640, 480, true), {0, -30, 640, 510});
    expect_box(window_frame(640, 480, false), {0, 0, 640, 480});
}

TEST(shadow_around, reaches_22_pixels_beyond_the_frame_and_lies_6_lower)
{
    const shadow_shape with_bar = shadow_around(window_frame(640, 480, true), 10);
    expect_box(with_bar.box, {-22, -46, 684, 554});
    expect_box(with_bar.hole.area, {22, 16, 640, 510});
    EXPECT_EQ(of(with_bar.hole.corners), (corners{10, 10, 10, 10}));
    const shadow_shape without = shadow_around(window_frame(1, 1, false), 0);
    expect_box(without.box, {-22, -16, 45, 45});
    expect_box(without.hole.area, {22, 16, 1, 1});
    EXPECT_EQ(of(without.hole.corners), square);
}

} // namespace
