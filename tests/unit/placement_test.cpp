#include "windows/placement.hpp"

#include "support/boxes.hpp"

#include <gtest/gtest.h>

namespace
{

constexpr wlr_box screen{.x = 0, .y = 0, .width = 1920, .height = 1080};

TEST(center_in, puts_the_content_in_the_middle)
{
    EXPECT_EQ(center_in(screen, 640, 480, 0), (wlr_box{640, 300, 640, 480}));
}

TEST(center_in, centres_content_and_title_bar_together)
{
    EXPECT_EQ(center_in(screen, 640, 480, 30), (wlr_box{640, 315, 640, 480}));
}

TEST(center_in, rounds_towards_zero)
{
    EXPECT_EQ(center_in(screen, 641, 481, 0), (wlr_box{639, 299, 641, 481}));
}

TEST(center_in, respects_the_origin_of_the_area)
{
    EXPECT_EQ(center_in({1920, 40, 1000, 500}, 400, 300, 0), (wlr_box{2220, 140, 400, 300}));
}

TEST(center_in, sticks_a_window_too_large_to_the_top_left_below_its_title_bar)
{
    EXPECT_EQ(center_in(screen, 3000, 2000, 30), (wlr_box{0, 30, 3000, 2000}));
}

TEST(center_in, keeps_a_window_that_only_its_title_bar_makes_too_tall_on_the_area)
{
    EXPECT_EQ(center_in(screen, 100, 1060, 30), (wlr_box{910, 30, 100, 1060}));
}

TEST(with_bar_in, leaves_a_box_alone_whose_bar_lies_inside)
{
    EXPECT_EQ(with_bar_in(screen, {100, 30, 400, 3000}, 30), (wlr_box{100, 30, 400, 3000}));
}

TEST(with_bar_in, moves_a_box_as_little_as_it_can)
{
    constexpr wlr_box area{.x = 100, .y = 40, .width = 1000, .height = 500};
    EXPECT_EQ(with_bar_in(area, {0, 0, 400, 300}, 30), (wlr_box{100, 70, 400, 300}));
    EXPECT_EQ(with_bar_in(area, {900, 700, 400, 300}, 30), (wlr_box{700, 540, 400, 300}));
}

TEST(with_bar_in, keeps_the_left_end_of_a_bar_that_is_too_wide)
{
    EXPECT_EQ(with_bar_in(screen, {-40, 500, 3000, 300}, 30), (wlr_box{0, 500, 3000, 300}));
}

TEST(same_box, tells_empty_boxes_apart)
{
    EXPECT_TRUE(same_box({1, 2, 3, 4}, {1, 2, 3, 4}));
    EXPECT_FALSE(same_box({0, 0, 0, 0}, {1, 0, 0, 0}));
}

struct float_box_case {
    wlr_box area;
    int titlebar;
    wlr_box expected;
};

class float_box : public testing::TestWithParam<float_box_case>
{
};

TEST_P(float_box, is_six_tenths_of_the_area_within_limits)
{
    EXPECT_EQ(float_box_in(GetParam().area, GetParam().titlebar), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(worked, float_box,
                         testing::Values(float_box_case{screen, 0, {384, 216, 1152, 648}},
                                         float_box_case{screen, 30, {384, 231, 1152, 648}},
                                         float_box_case{{0, 0, 3840, 2160}, 0, {1320, 655, 1200, 850}},
                                         float_box_case{{0, 0, 3840, 2160}, 30, {1320, 670, 1200, 850}},
                                         float_box_case{{0, 0, 640, 400}, 0, {80, 40, 480, 320}},
                                         float_box_case{
                                             {100, 0, 300, 400}, 0, {10, 40, 480, 320}}, // left of the area
                                         float_box_case{{1920, 27, 1366, 741}, 0, {2193, 175, 819, 444}},
                                         float_box_case{{0, 0, 0, 0}, 0, {256, 144, 768, 432}},
                                         float_box_case{{50, 60, 0, 700}, 30, {256, 159, 768, 432}}));

TEST(boxes_overlap, counts_a_single_shared_pixel)
{
    EXPECT_TRUE(boxes_overlap(screen, {1919, 1079, 10, 10}));
    EXPECT_TRUE(boxes_overlap({-9, -9, 10, 10}, screen));
}

TEST(boxes_overlap, does_not_count_touching_edges)
{
    EXPECT_FALSE(boxes_overlap(screen, {1920, 0, 10, 10}));
    EXPECT_FALSE(boxes_overlap(screen, {0, 1080, 10, 10}));
    EXPECT_FALSE(boxes_overlap(screen, {-10, 0, 10, 10}));
    EXPECT_FALSE(boxes_overlap(screen, {0, -10, 10, 10}));
}

struct place_case {
    vantore_place place;
    int w, h;
    wlr_box expected;
};

class place : public testing::TestWithParam<place_case>
{
};

TEST_P(place, is_a_margin_away_from_its_corner_or_in_the_middle)
{
    const place_case &c = GetParam();
    EXPECT_EQ(place_in({100, 40, 1000, 600}, c.w, c.h, c.place), c.expected);
}

INSTANTIATE_TEST_SUITE_P(all, place,
                         testing::Values(place_case{PLACE_TOP_RIGHT, 300, 200, {784, 56, 300, 200}},
                                         place_case{PLACE_TOP_LEFT, 300, 200, {116, 56, 300, 200}},
                                         place_case{PLACE_BOTTOM_RIGHT, 300, 200, {784, 424, 300, 200}},
                                         place_case{PLACE_BOTTOM_LEFT, 300, 200, {116, 424, 300, 200}},
                                         place_case{PLACE_CENTER, 300, 200, {450, 240, 300, 200}},
                                         place_case{PLACE_CENTER, 301, 201, {449, 239, 301, 201}},
                                         // These windows are larger than the area. Halves are rounded towards
                                         // zero here too.
                                         place_case{PLACE_CENTER, 1003, 605, {99, 38, 1003, 605}},
                                         place_case{PLACE_TOP_RIGHT, 2000, 200, {-916, 56, 2000, 200}}));

TEST(fills, needs_both_sides_of_the_screen)
{
    EXPECT_TRUE(fills({500, 500, 1920, 1080}, screen)) << "wherever it lies";
    EXPECT_TRUE(fills({0, 0, 4000, 4000}, screen));
    EXPECT_FALSE(fills({0, 0, 1919, 1080}, screen));
    EXPECT_FALSE(fills({0, 0, 1920, 1079}, screen));
    EXPECT_FALSE(fills({0, 0, 1920, 1080}, {}));
}

} // namespace
