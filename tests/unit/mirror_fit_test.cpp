// Where the picture of a mirror and the pointer on it lie.

#include "outputs/mirror_fit.hpp"

#include "support/boxes.hpp"

#include <gtest/gtest.h>

TEST(mirror_fit, halves_a_picture_of_twice_the_size)
{
    const mirror_fit fit = fit_picture(3840, 2160, 1920, 1080);
    EXPECT_EQ(fit.box, (wlr_box{0, 0, 1920, 1080}));
    EXPECT_EQ(fit.scale, 0.5);
}

TEST(mirror_fit, leaves_bars_at_the_sides_of_a_narrow_picture)
{
    const mirror_fit fit = fit_picture(1024, 768, 1920, 1080);
    EXPECT_EQ(fit.box, (wlr_box{240, 0, 1440, 1080}));
    EXPECT_EQ(fit.scale, 1440.0 / 1024);
}

TEST(mirror_fit, leaves_bars_above_and_below_a_wide_picture)
{
    EXPECT_EQ(fit_picture(1920, 1080, 1024, 768).box, (wlr_box{0, 96, 1024, 576}));
}

TEST(mirror_fit, rounds_to_whole_units_and_shows_at_least_one)
{
    EXPECT_EQ(fit_picture(3, 2, 10, 10).box, (wlr_box{0, 1, 10, 7}));
    EXPECT_EQ(fit_picture(10'000, 1, 100, 100).box, (wlr_box{0, 49, 100, 1}));
    EXPECT_EQ(fit_picture(1, 10'000, 100, 100).box, (wlr_box{49, 0, 1, 100}));
}

TEST(mirror_fit, places_the_pointer_by_its_hotspot_in_the_scale_of_the_picture)
{
    const mirror_fit half = fit_picture(3840, 2160, 1920, 1080);
    EXPECT_EQ(fit_pointer(half, 1000, 600, 0, 0, 24, 24), (wlr_box{500, 300, 12, 12}));
    EXPECT_EQ(fit_pointer(half, 1000, 600, 8, 4, 24, 24), (wlr_box{496, 298, 12, 12}));
    const mirror_fit centred = fit_picture(1024, 768, 1920, 1080);
    EXPECT_EQ(fit_pointer(centred, 512, 384, 0, 0, 32, 32), (wlr_box{960, 540, 45, 45}));
    EXPECT_EQ(fit_pointer(half, 10, 10, 0, 0, 1, 1).width, 1);
}
