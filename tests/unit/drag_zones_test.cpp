// Where dragged windows land, and how resizing changes a box.

#include "input/drag_zones.hpp"

#include "support/boxes.hpp"

#include <gtest/gtest.h>

namespace
{

constexpr wlr_box frame{.x = 100, .y = 200, .width = 400, .height = 300};

TEST(zone_at, stacks_in_the_top_strip)
{
    EXPECT_EQ(zone_at(frame, 100, 200), DROP_STACK);
    EXPECT_EQ(zone_at(frame, 300, 231.9), DROP_STACK);
    EXPECT_EQ(zone_at(frame, 300, 232), DROP_BEFORE);
}

TEST(zone_at, swaps_strictly_inside_the_middle)
{
    EXPECT_EQ(zone_at(frame, 300, 350), DROP_SWAP);
    EXPECT_EQ(zone_at(frame, 220.1, 290.1), DROP_SWAP);
    EXPECT_EQ(zone_at(frame, 379.9, 409.9), DROP_SWAP);
    EXPECT_EQ(zone_at(frame, 220, 350), DROP_AFTER);
    EXPECT_EQ(zone_at(frame, 380, 340), DROP_BEFORE);
    EXPECT_EQ(zone_at(frame, 300, 290), DROP_BEFORE);
    EXPECT_EQ(zone_at(frame, 300, 410), DROP_AFTER);
}

TEST(zone_at, puts_before_in_the_upper_half_and_after_in_the_lower)
{
    EXPECT_EQ(zone_at(frame, 180, 349.9), DROP_BEFORE);
    EXPECT_EQ(zone_at(frame, 180, 350), DROP_AFTER); // exactly half the height, a fifth of the width
}

TEST(zone_at, takes_an_empty_frame)
{
    EXPECT_EQ(zone_at({0, 0, 0, 0}, 0, 0), DROP_STACK);
    EXPECT_EQ(zone_at({0, 0, 0, 0}, 0, 40), DROP_AFTER);
}

TEST(zone_hint_box, shows_what_the_window_would_take)
{
    const wlr_box odd{10, 20, 100, 75};
    EXPECT_EQ(zone_hint_box(odd, DROP_SWAP), odd);
    EXPECT_EQ(zone_hint_box(odd, DROP_STACK), (wlr_box{10, 20, 100, 32}));
    EXPECT_EQ(zone_hint_box(odd, DROP_BEFORE), (wlr_box{10, 20, 100, 37}));
    EXPECT_EQ(zone_hint_box(odd, DROP_AFTER), (wlr_box{10, 58, 100, 37}));
}

struct snap_case {
    double cx, cy;
    snap_zone zone;
    wlr_box box;
};

// The area has an odd width and height and lies below a panel.
constexpr wlr_box usable{.x = 1000, .y = 30, .width = 1001, .height = 701};
const snap_case snap_cases[]{
    {1000, 30, SNAP_TL, {1000, 30, 500, 350}},
    {1024, 54, SNAP_TL, {1000, 30, 500, 350}},
    {2001, 30, SNAP_TR, {1500, 30, 500, 350}},
    {1977, 54, SNAP_TR, {1500, 30, 500, 350}},
    {1500, 54, SNAP_TOP, {1000, 30, 1001, 350}},
    {1000, 731, SNAP_BL, {1000, 380, 500, 350}},
    {1024, 707, SNAP_BL, {1000, 380, 500, 350}},
    {2001, 731, SNAP_BR, {1500, 380, 500, 350}},
    {1024, 400, SNAP_LEFT, {1000, 30, 500, 701}},
    {1977, 400, SNAP_RIGHT, {1500, 30, 500, 701}},
    {1500, 707, SNAP_BOTTOM, {1000, 380, 1001, 350}},
    {1025, 400, SNAP_NONE, {}},
    {1976, 400, SNAP_NONE, {}},
    {1500, 55, SNAP_NONE, {}},
    {1500, 706, SNAP_NONE, {}},
    {999, 400, SNAP_NONE, {}},
    {2002, 400, SNAP_NONE, {}},
};

TEST(snap_zone_for, knows_its_bands)
{
    for (const snap_case &c : snap_cases) {
        wlr_box box{};
        EXPECT_EQ(snap_zone_for(usable, c.cx, c.cy, box), c.zone) << c.cx << "," << c.cy;
        EXPECT_EQ(box, c.box) << c.cx << "," << c.cy;
    }
}

TEST(snap_zone_for, prefers_left_and_top_where_bands_overlap)
{
    wlr_box box{};
    EXPECT_EQ(snap_zone_for({0, 0, 20, 20}, 10, 10, box), SNAP_TL);
    EXPECT_EQ(snap_zone_for({0, 0, 20, 500}, 10, 250, box), SNAP_LEFT);
}

TEST(snap_zone_for, has_none_without_an_area)
{
    wlr_box box{1, 2, 3, 4};
    EXPECT_EQ(snap_zone_for({0, 0, 0, 100}, 0, 0, box), SNAP_NONE);
    EXPECT_EQ(snap_zone_for({0, 0, 100, 0}, 0, 0, box), SNAP_NONE);
    EXPECT_EQ(box, (wlr_box{1, 2, 3, 4}));
}

TEST(resize_edges_in, are_the_outermost_pixels_at_three_sides)
{
    const wlr_box box{100, 200, 400, 300};
    EXPECT_EQ(resize_edges_in(box, 8, 100, 300), WLR_EDGE_LEFT);
    EXPECT_EQ(resize_edges_in(box, 8, 107.9, 300), WLR_EDGE_LEFT);
    EXPECT_EQ(resize_edges_in(box, 8, 108, 300), 0U);
    EXPECT_EQ(resize_edges_in(box, 8, 492, 300), WLR_EDGE_RIGHT);
    EXPECT_EQ(resize_edges_in(box, 8, 491.9, 300), 0U);
    EXPECT_EQ(resize_edges_in(box, 8, 300, 492), WLR_EDGE_BOTTOM);
    EXPECT_EQ(resize_edges_in(box, 8, 300, 491.9), 0U);
    EXPECT_EQ(resize_edges_in(box, 8, 100, 499), uint32_t(WLR_EDGE_LEFT) | WLR_EDGE_BOTTOM);
    EXPECT_EQ(resize_edges_in(box, 8, 499, 499), uint32_t(WLR_EDGE_RIGHT) | WLR_EDGE_BOTTOM);
    EXPECT_EQ(resize_edges_in(box, 8, 300, 200), 0U); // the top edge never counts
    EXPECT_EQ(resize_edges_in(box, 8, 100, 200), WLR_EDGE_LEFT);
    for (const auto &[x, y] : {std::pair{99.9, 300.0}, {500.0, 300.0}, {300.0, 199.9}, {300.0, 500.0}})
        EXPECT_EQ(resize_edges_in(box, 8, x, y), 0U);
    EXPECT_EQ(resize_edges_in({0, 0, 10, 100}, 8, 5, 50), WLR_EDGE_LEFT); // left wins in a narrow window
}

TEST(resized, moves_only_the_edges_that_are_dragged)
{
    const wlr_box box{100, 200, 400, 300};
    EXPECT_EQ(resized(box, WLR_EDGE_RIGHT, 650.9, 999, 120, 40), (wlr_box{100, 200, 550, 300}));
    EXPECT_EQ(resized(box, WLR_EDGE_LEFT, 50.5, 999, 120, 40), (wlr_box{50, 200, 450, 300}));
    EXPECT_EQ(resized(box, WLR_EDGE_BOTTOM, 0, 600, 120, 40), (wlr_box{100, 200, 400, 400}));
    EXPECT_EQ(resized(box, WLR_EDGE_TOP, 0, 100, 120, 40), (wlr_box{100, 100, 400, 400}));
    EXPECT_EQ(resized(box, WLR_EDGE_TOP | WLR_EDGE_LEFT, 90, 190, 120, 40), (wlr_box{90, 190, 410, 310}));
}

TEST(resized, keeps_the_least_size_and_the_opposite_edge)
{
    const wlr_box box{100, 200, 400, 300};
    EXPECT_EQ(resized(box, WLR_EDGE_LEFT, 1000, 0, 120, 40), (wlr_box{380, 200, 120, 300}));
    EXPECT_EQ(resized(box, WLR_EDGE_RIGHT, -50, 0, 120, 40), (wlr_box{100, 200, 120, 300}));
    EXPECT_EQ(resized(box, WLR_EDGE_TOP, 0, 1000, 120, 40), (wlr_box{100, 460, 400, 40}));
    EXPECT_EQ(resized(box, WLR_EDGE_BOTTOM, 0, -50, 500, 40), (wlr_box{100, 200, 400, 40}));
}

} // namespace
