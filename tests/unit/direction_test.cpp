// How far away a window lies in a direction.

#include "workspaces/direction.hpp"

#include <gtest/gtest.h>

namespace
{

constexpr wlr_box here{.x = 100, .y = 100, .width = 10, .height = 10}; // centre 105, 105

TEST(direction_score, counts_a_step_aside_half_as_much_again_as_one_ahead)
{
    EXPECT_EQ(direction_score(here, {140, 120, 10, 10}, 1, 0), 40 + 1.5 * 20);
    EXPECT_EQ(direction_score(here, {140, 120, 10, 10}, 0, 1), 20 + 1.5 * 40);
    EXPECT_EQ(direction_score(here, {60, 90, 10, 10}, -1, 0), 40 + 1.5 * 10);
    EXPECT_EQ(direction_score(here, {60, 90, 10, 10}, 0, -1), 10 + 1.5 * 40);
}

TEST(direction_score, measures_from_centre_to_centre)
{
    EXPECT_EQ(direction_score(here, {100, 100, 31, 10}, 1, 0), 10.5);
}

TEST(direction_score, passes_over_what_lies_the_other_way)
{
    EXPECT_EQ(direction_score(here, {60, 100, 10, 10}, 1, 0), std::nullopt);
    EXPECT_EQ(direction_score(here, {140, 100, 10, 10}, -1, 0), std::nullopt);
    EXPECT_EQ(direction_score(here, {100, 60, 10, 10}, 0, 1), std::nullopt);
    EXPECT_EQ(direction_score(here, {100, 140, 10, 10}, 0, -1), std::nullopt);
}

TEST(direction_score, needs_a_distance_of_more_than_one_pixel)
{
    EXPECT_EQ(direction_score(here, {101, 100, 10, 10}, 1, 0), std::nullopt);
    EXPECT_EQ(direction_score(here, {101, 100, 11, 10}, 1, 0), 1.5);
    EXPECT_EQ(direction_score(here, {99, 100, 10, 10}, -1, 0), std::nullopt);
    EXPECT_EQ(direction_score(here, {98, 100, 10, 10}, -1, 0), 2);
    EXPECT_EQ(direction_score(here, here, 0, 1), std::nullopt);
}

} // namespace
