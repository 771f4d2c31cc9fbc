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

} // namespace
