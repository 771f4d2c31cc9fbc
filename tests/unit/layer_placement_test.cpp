#include "windows/layer_placement.hpp"

#include "support/boxes.hpp"

#include <gtest/gtest.h>
#include <limits>

namespace
{

constexpr wlr_box full{.x = 100, .y = 50, .width = 1000, .height = 800};
constexpr wlr_box usable{.x = 100, .y = 90, .width = 1000, .height = 760};
constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

enum edge : uint32_t {
    TOP = ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP,
    BOTTOM = ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM,
    LEFT = ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT,
    RIGHT = ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT,
};

struct place_case {
    const char *name;
    layer_wish wish;
    wlr_box expected;
};

class placed : public testing::TestWithParam<place_case>
{
};

TEST_P(placed, where_its_anchors_and_margins_say)
{
    EXPECT_EQ(layer_box(GetParam().wish, full, usable), GetParam().expected);
}

const place_case place_cases[]{
    {"in_the_middle_without_anchors", {.width = 200, .height = 100}, {500, 420, 200, 100}},
    {"odd_sizes_round_down", {.width = 201, .height = 101}, {500, 420, 201, 101}},
    {"at_the_top", {.width = 200, .height = 100, .anchor = TOP, .top = 7}, {500, 97, 200, 100}},
    {"at_the_bottom", {.width = 200, .height = 100, .anchor = BOTTOM, .bottom = 7}, {500, 743, 200, 100}},
    {"at_the_left", {.width = 200, .height = 100, .anchor = LEFT, .left = 7}, {107, 420, 200, 100}},
    {"at_the_right", {.width = 200, .height = 100, .anchor = RIGHT, .right = 7}, {893, 420, 200, 100}},
    {"in_a_corner",
     {.width = 200, .height = 100, .anchor = BOTTOM | RIGHT, .right = 3, .bottom = 4},
     {897, 746, 200, 100}},
    {"between_opposite_edges_in_the_middle",
     {.width = 200, .height = 100, .anchor = LEFT | RIGHT | TOP | BOTTOM, .top = 9, .left = 9},
     {500, 420, 200, 100}},
    {"as_wide_as_there_is_room",
     {.width = 0, .height = 30, .anchor = TOP | LEFT | RIGHT, .top = 1, .right = 20, .left = 10},
     {110, 91, 970, 30}},
    {"over_all_of_the_usable_box", {.anchor = LEFT | RIGHT | TOP | BOTTOM}, usable},
    {"over_the_zones_of_others", {.anchor = LEFT | RIGHT | TOP | BOTTOM, .exclusive_zone = -1}, full},
    {"within_the_zones_with_any_other_zone",
     {.anchor = LEFT | RIGHT | TOP | BOTTOM, .exclusive_zone = -2},
     usable},
    {"beyond_the_edge_with_a_negative_margin",
     {.width = 200, .height = 100, .anchor = TOP, .top = -20},
     {500, 70, 200, 100}},
    {"one_pixel_where_margins_leave_nothing",
     {.width = 0,
      .height = 0,
      .anchor = LEFT | RIGHT | TOP | BOTTOM,
      .top = 400,
      .right = 600,
      .bottom = 400,
      .left = 600},
     {700, 490, 1, 1}},
    {"within_reach_with_the_largest_numbers",
     {.width = highest, .height = highest, .anchor = BOTTOM | RIGHT, .right = highest, .bottom = highest},
     {-1'000'000'000, -1'000'000'000, highest, highest}},
    {"within_reach_with_the_lowest_numbers",
     {.anchor = LEFT | RIGHT | TOP | BOTTOM,
      .top = lowest,
      .right = lowest,
      .bottom = lowest,
      .left = lowest},
     {-1'000'000'000, -1'000'000'000, highest, highest}},
};

const auto name_of = [](const auto &param) { return param.param.name; };

INSTANTIATE_TEST_SUITE_P(a_surface, placed, testing::ValuesIn(place_cases), name_of);

struct zone_case {
    const char *name;
    wlr_edges edge;
    int zone, margin;
    wlr_box expected;
};

class zone_at : public testing::TestWithParam<zone_case>
{
};

TEST_P(zone_at, takes_its_share_and_no_more_than_there_is)
{
    const zone_case &c = GetParam();
    EXPECT_EQ(without_zone(usable, c.edge, c.zone, c.margin), c.expected);
}

const zone_case zone_cases[]{
    {"the_top", WLR_EDGE_TOP, 30, 0, {100, 120, 1000, 730}},
    {"the_top_with_a_margin", WLR_EDGE_TOP, 30, 5, {100, 125, 1000, 725}},
    {"the_bottom", WLR_EDGE_BOTTOM, 30, 5, {100, 90, 1000, 725}},
    {"the_left", WLR_EDGE_LEFT, 30, 5, {135, 90, 965, 760}},
    {"the_right", WLR_EDGE_RIGHT, 30, 5, {100, 90, 965, 760}},
    {"no_edge", WLR_EDGE_NONE, 30, 5, usable},
    {"an_edge_with_a_negative_margin", WLR_EDGE_TOP, 30, -10, {100, 110, 1000, 740}},
    {"an_edge_that_a_margin_turns_outward", WLR_EDGE_TOP, 30, -40, usable},
    {"an_edge_larger_than_the_output", WLR_EDGE_TOP, 5000, 0, {100, 850, 1000, 0}},
    {"an_edge_with_the_largest_numbers", WLR_EDGE_RIGHT, highest, highest, {100, 90, 0, 760}},
    {"an_edge_with_the_lowest_numbers", WLR_EDGE_LEFT, lowest, lowest, usable},
};

INSTANTIATE_TEST_SUITE_P(the, zone_at, testing::ValuesIn(zone_cases), name_of);

TEST(zone, of_an_empty_box_takes_nothing)
{
    EXPECT_EQ(without_zone({5, 6, 0, 0}, WLR_EDGE_TOP, 30, 0), (wlr_box{5, 6, 0, 0}));
}

} // namespace
