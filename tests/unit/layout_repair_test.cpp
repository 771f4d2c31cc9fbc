// Where outputs go that overlap others, or that begin left of or above 0, 0.

#include "outputs/layout_repair.hpp"
#include "windows/placement.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

using testing::Eq;
using testing::Optional;

namespace
{

constexpr wlr_box first{0, 0, 1920, 1080};

layout_offset way_out(const wlr_box &moved, std::vector<wlr_box> others)
{
    return way_out_of_overlaps(moved, others);
}

wlr_box shifted(const wlr_box &box, const layout_offset &by)
{
    return {box.x + by.x, box.y + by.y, box.width, box.height};
}

TEST(overlapping_output, stays_where_it_touches_another)
{
    EXPECT_EQ(way_out({1920, 0, 800, 600}, {first}), (layout_offset{0, 0}));
    EXPECT_EQ(way_out({0, 1080, 800, 600}, {first}), (layout_offset{0, 0}));
}

TEST(overlapping_output, goes_the_shortest_way_out)
{
    EXPECT_EQ(way_out({100, 100, 1920, 1080}, {first}), (layout_offset{0, 980}));
    EXPECT_EQ(way_out({1800, 100, 1920, 1080}, {first}), (layout_offset{120, 0}));
    EXPECT_EQ(way_out({-1800, 100, 1920, 1080}, {first}), (layout_offset{-120, 0}));
    EXPECT_EQ(way_out({100, -980, 1920, 1080}, {first}), (layout_offset{0, -100}));
}

TEST(overlapping_output, goes_sideways_where_both_ways_are_equally_long)
{
    EXPECT_EQ(way_out({50, 50, 100, 100}, {{0, 0, 100, 100}}), (layout_offset{50, 0}));
    EXPECT_EQ(way_out({0, 0, 100, 100}, {{0, 0, 100, 100}}), (layout_offset{-100, 0}));
}

TEST(overlapping_output, clears_one_after_the_other)
{
    EXPECT_EQ(way_out({90, 0, 100, 100}, {{0, 0, 100, 100}, {100, 0, 400, 30}}), (layout_offset{10, 30}));
}

TEST(overlapping_output, gives_up_between_two_that_push_it_to_and_fro)
{
    const std::vector<wlr_box> others{{0, 0, 100, 1000}, {150, 0, 100, 1000}};
    const wlr_box moved{80, 400, 100, 100};
    const wlr_box now = shifted(moved, way_out(moved, others));
    EXPECT_EQ(now.y, 400);
    EXPECT_TRUE(boxes_overlap(now, others[0]) || boxes_overlap(now, others[1]));
}

TEST(overlapping_output, looks_only_at_outputs_with_a_place)
{
    EXPECT_EQ(way_out({10, 10, 100, 100}, {{0, 0, 0, 0}, {0, 0, 500, 0}}), (layout_offset{0, 0}));
    EXPECT_EQ(way_out({10, 10, 0, 0}, {first}), (layout_offset{0, 0}));
}

TEST(layout_shift, is_needed_only_where_an_output_is_negative)
{
    EXPECT_EQ(way_to_origin({}), std::nullopt);
    EXPECT_EQ(way_to_origin(std::vector{first}), std::nullopt);
    EXPECT_EQ(way_to_origin(std::vector{wlr_box{500, 300, 100, 100}}), std::nullopt);
    EXPECT_THAT(way_to_origin(std::vector{wlr_box{-1920, 0, 1920, 1080}, first}),
                Optional(Eq(layout_offset{1920, 0})));
    EXPECT_THAT(way_to_origin(std::vector{wlr_box{-5, 10, 10, 10}, wlr_box{0, -7, 10, 10}}),
                Optional(Eq(layout_offset{5, 7})));
    EXPECT_EQ(way_to_origin(std::vector{wlr_box{-5, -5, 0, 10}}), std::nullopt);
}

// After at most 16 rounds, the moved output overlaps nothing, or it still would after one more.
TEST(random_layouts, are_repaired)
{
    std::mt19937 random{7};
    std::uniform_int_distribution<int> place{-3000, 3000}, side{1, 2500}, number{0, 5};
    int repaired = 0;
    for (int i = 0; i < 5000; i++) {
        std::vector<wlr_box> others(size_t(number(random)));
        for (wlr_box &box : others)
            box = {place(random), place(random), side(random), side(random)};
        const wlr_box moved{place(random), place(random), side(random), side(random)};
        const wlr_box now = shifted(moved, way_out_of_overlaps(moved, others));
        const auto overlapped = [&](const wlr_box &other) { return boxes_overlap(now, other); };
        repaired += std::ranges::none_of(others, overlapped) ? 1 : 0;
        std::vector<wlr_box> all = others;
        all.push_back(now);
        const layout_offset shift = way_to_origin(all).value_or(layout_offset{});
        for (const wlr_box &box : all) {
            EXPECT_GE(box.x + shift.x, 0);
            EXPECT_GE(box.y + shift.y, 0);
        }
        EXPECT_GE(shift.x, 0);
        EXPECT_GE(shift.y, 0);
    }
    EXPECT_GT(repaired, 4500);
}

} // namespace
