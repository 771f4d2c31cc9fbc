// Where animations stand at exact times.

#include "presentation/motion.hpp"

#include <gtest/gtest.h>

namespace
{

TEST(ease_out, starts_fast_and_ends_slowly)
{
    EXPECT_DOUBLE_EQ(ease_out_quad(0), 0);
    EXPECT_DOUBLE_EQ(ease_out_quad(0.25), 0.4375);
    EXPECT_DOUBLE_EQ(ease_out_quad(0.5), 0.75);
    EXPECT_DOUBLE_EQ(ease_out_quad(1), 1);
    EXPECT_DOUBLE_EQ(ease_out_cubic(0), 0);
    EXPECT_DOUBLE_EQ(ease_out_cubic(0.25), 0.578125);
    EXPECT_DOUBLE_EQ(ease_out_cubic(0.5), 0.875);
    EXPECT_DOUBLE_EQ(ease_out_cubic(1), 1);
}

TEST(open_fade_opacity, rises_within_160_milliseconds)
{
    EXPECT_FLOAT_EQ(open_fade_opacity(0), 0.05F);
    EXPECT_FLOAT_EQ(open_fade_opacity(16), 0.19F);
    EXPECT_FLOAT_EQ(open_fade_opacity(40), 0.4375F);
    EXPECT_FLOAT_EQ(open_fade_opacity(80), 0.75F);
    EXPECT_LT(open_fade_opacity(159), 1);
    EXPECT_EQ(open_fade_opacity(160), 1);
    EXPECT_EQ(open_fade_opacity(INT64_MAX), 1);
    EXPECT_FLOAT_EQ(open_fade_opacity(-1), 0.05F);
}

struct slide_case {
    int64_t elapsed_ms;
    int dir, from, to;
};

constexpr slide_case slides[]{
    {0, 1, 0, 1280},   {30, 1, -625, 655},  {75, 1, -1120, 160},  {149, 1, -1280, 0}, {150, 1, -1280, 0},
    {0, -1, 0, -1280}, {30, -1, 625, -655}, {75, -1, 1120, -160}, {150, -1, 1280, 0}, {-1, 1, 0, 1280},
};

TEST(slide_at, moves_both_workspaces_by_whole_pixels_side_by_side)
{
    for (const slide_case &c : slides) {
        const slide_offsets at = slide_at(c.elapsed_ms, c.dir, 1280);
        EXPECT_EQ(at.from, c.from) << c.elapsed_ms;
        EXPECT_EQ(at.to, c.to) << c.elapsed_ms;
        EXPECT_EQ(at.to - at.from, 1280 * c.dir) << c.elapsed_ms;
    }
}

TEST(overview_zoom, moves_fast_first_when_it_opens_and_fast_last_when_it_closes)
{
    for (const int64_t before : {int64_t{-1}, int64_t{0}}) {
        EXPECT_EQ(overview_opening_at(before).opacity, 0);
        EXPECT_EQ(overview_opening_at(before).part, 0);
        EXPECT_EQ(overview_closing_at(before).opacity, 1);
        EXPECT_EQ(overview_closing_at(before).part, 0);
    }
    EXPECT_FLOAT_EQ(overview_opening_at(75).opacity, 0.75F);
    EXPECT_DOUBLE_EQ(overview_opening_at(75).part, 0.875);
    EXPECT_FLOAT_EQ(overview_closing_at(75).opacity, 0.25F);
    EXPECT_DOUBLE_EQ(overview_closing_at(75).part, 0.125);
    for (const int64_t after : {int64_t{150}, INT64_MAX}) {
        EXPECT_EQ(overview_opening_at(after).opacity, 1);
        EXPECT_EQ(overview_opening_at(after).part, 1);
        EXPECT_EQ(overview_closing_at(after).opacity, 0);
        EXPECT_EQ(overview_closing_at(after).part, 1);
    }
}

} // namespace
