// The Mouse Tiler's tables, and where things lie in its display.

#include "input/tiler_zones.hpp"

#include "support/boxes.hpp"

#include <gtest/gtest.h>

namespace
{

struct pad_row {
    const char *name;
    int cols, rows;
    bool insert, maximise;
};

constexpr pad_row pads[]{
    {"HALVES", 2, 1, false, false}, {"STACK", 1, 2, false, false}, {"CORNERS", 2, 2, false, false},
    {"THIRDS", 3, 1, false, false}, {"75/25", 2, 1, false, false}, {"INSERT", 3, 1, true, false},
    {"MAX", 1, 1, false, true},
};

TEST(tiler_tables, have_seven_pads)
{
    for (size_t i = 0; i < 7; i++) {
        EXPECT_STREQ(MT_PADS[i].name, pads[i].name);
        EXPECT_EQ(MT_PADS[i].cols, pads[i].cols) << i;
        EXPECT_EQ(MT_PADS[i].rows, pads[i].rows) << i;
        EXPECT_EQ(MT_PADS[i].insert, pads[i].insert) << i;
        EXPECT_EQ(MT_PADS[i].maximise, pads[i].maximise) << i;
    }
}

// A box says where a window lands from a zone on 1200x900 at 0,0 without gaps. The pad, column and row count
// from 1.
struct zone_row {
    int pad, col, row;
    wlr_box box;
};

constexpr zone_row zones[]{
    {0, 1, 1, {0, 0, 600, 900}},    {0, 2, 1, {600, 0, 600, 900}},   {1, 1, 1, {0, 0, 1200, 450}},
    {1, 1, 2, {0, 450, 1200, 450}}, {2, 1, 1, {0, 0, 600, 450}},     {2, 2, 1, {600, 0, 600, 450}},
    {2, 1, 2, {0, 450, 600, 450}},  {2, 2, 2, {600, 450, 600, 450}}, {3, 1, 1, {0, 0, 400, 900}},
    {3, 2, 1, {400, 0, 400, 900}},  {3, 3, 1, {800, 0, 400, 900}},   {4, 1, 1, {0, 0, 900, 900}},
    {4, 2, 1, {900, 0, 300, 900}},  {5, 2, 1, {400, 0, 400, 900}},   {6, 1, 1, {0, 0, 1200, 900}},
};

TEST(tiler_tables, have_fifteen_zones)
{
    for (size_t i = 0; i < 15; i++) {
        const mt_zone_def &zone = MT_ZONES[i];
        EXPECT_EQ(zone.pad, zones[i].pad) << i;
        EXPECT_EQ(zone.cell_col, zones[i].col) << i;
        EXPECT_EQ(zone.cell_row, zones[i].row) << i;
        EXPECT_EQ(mt_zone_landing(zone, {0, 0, 1200, 900}, 0), zones[i].box) << i;
    }
}

TEST(tiler_landing, leaves_half_a_gap_at_each_side)
{
    EXPECT_EQ(mt_zone_landing(MT_ZONES[0], {100, 50, 1201, 901}, 9), (wlr_box{104, 54, 591, 892}));
    EXPECT_EQ(mt_zone_landing(MT_ZONES[1], {100, 50, 1201, 901}, 9), (wlr_box{705, 54, 591, 892}));
}

TEST(tiler_landing, is_never_under_fifty_pixels)
{
    EXPECT_EQ(mt_zone_landing(MT_ZONES[9], {0, 0, 300, 100}, 200), (wlr_box{200, 100, 50, 50}));
}

TEST(tiler_display, docks_below_or_above_the_panel)
{
    EXPECT_EQ(mt_hud_box({0, 30, 1920, 1050}, true), (wlr_box{657, 52, 606, 144}));
    EXPECT_EQ(mt_hud_box({0, 30, 1920, 1050}, false), (wlr_box{657, 914, 606, 144}));
    EXPECT_EQ(mt_hud_box({1920, 0, 601, 400}, true).x, 1918); // -5 / 2 is rounded towards zero
}

TEST(tiler_display, leaves_gaps_between_zones_but_not_at_the_pads_edges)
{
    const wlr_fbox left = mt_zone_shape(MT_ZONES[0]);
    EXPECT_DOUBLE_EQ(left.x, 22);
    EXPECT_DOUBLE_EQ(left.y, 20);
    EXPECT_DOUBLE_EQ(left.width, 27.5);
    EXPECT_DOUBLE_EQ(left.height, 38);
    const wlr_fbox corner = mt_zone_shape(MT_ZONES[7]);
    EXPECT_DOUBLE_EQ(corner.x, 190 + 29 + 1.5);
    EXPECT_DOUBLE_EQ(corner.y, 20 + 19 + 1.5);
    EXPECT_DOUBLE_EQ(corner.width, 27.5);
    EXPECT_DOUBLE_EQ(corner.height, 17.5);
}

TEST(tiler_display, outlines_the_cells_beside_the_inserted_zone)
{
    EXPECT_FALSE(mt_cell_has_zone(5, 1, 1));
    EXPECT_TRUE(mt_cell_has_zone(5, 2, 1));
    EXPECT_FALSE(mt_cell_has_zone(5, 3, 1));
    for (int pad = 0; pad < 5; pad++)
        EXPECT_TRUE(mt_cell_has_zone(pad, 1, 1)) << pad;
    const wlr_fbox cell = mt_cell_shape(5, 3, 1);
    const double width = 52.0 / 3;
    EXPECT_DOUBLE_EQ(cell.x, 12 + 84 * 5 + 10 + 2 * (width + 3));
    EXPECT_DOUBLE_EQ(cell.width, width);
    EXPECT_DOUBLE_EQ(cell.height, 38);
}

TEST(tiler_pick, is_the_zone_under_the_pointer_also_in_the_gaps)
{
    const wlr_box hud{1000, 500, 606, 144};
    for (size_t i = 0; i < 15; i++) {
        const wlr_fbox shape = mt_zone_shape(MT_ZONES[i]);
        const mt_pick pick =
            mt_pick_at(hud, hud.x + shape.x + shape.width / 2, hud.y + shape.y + shape.height / 2);
        EXPECT_EQ(pick.zone, int(i));
        EXPECT_EQ(pick.workspace, -1);
    }
    EXPECT_EQ(mt_pick_at(hud, 1022, 520).zone, 0);
    EXPECT_EQ(mt_pick_at(hud, 1049.9, 520).zone, 0);
    EXPECT_EQ(mt_pick_at(hud, 1052, 520).zone, 1); // 52.5, truncated
    EXPECT_EQ(mt_pick_at(hud, 1021.9, 520), mt_pick{});
}

TEST(tiler_pick, is_the_workspace_tile_under_the_pointer)
{
    const wlr_box hud{1000, 500, 606, 144};
    for (int i = 0; i < 9; i++) {
        EXPECT_EQ(mt_pick_at(hud, 1103 + 45 * i, 610), (mt_pick{.zone = -1, .workspace = i}));
        EXPECT_EQ(mt_pick_at(hud, 1142.9 + 45 * i, 636.9).workspace, i);
        EXPECT_EQ(mt_pick_at(hud, 1143 + 45 * i, 610), mt_pick{});
    }
    EXPECT_EQ(mt_pick_at(hud, 1103, 637), mt_pick{});
}

// Returns an all-zero box when there is nothing to draw.
wlr_fbox sketch(int tile, const wlr_box &window, const wlr_box &usable)
{
    return mt_miniature(tile, window, usable).value_or(wlr_fbox{});
}

TEST(tiler_miniature, is_the_window_at_a_scale)
{
    const wlr_fbox box = sketch(1, {960, 540, 480, 270}, {0, 0, 1920, 1080});
    EXPECT_DOUBLE_EQ(box.x, 148 + 3 + 17);
    EXPECT_DOUBLE_EQ(box.y, 113 + 10.5);
    EXPECT_DOUBLE_EQ(box.width, 8.5);
    EXPECT_DOUBLE_EQ(box.height, 5.25);
}

TEST(tiler_miniature, stays_inside_its_tile_and_can_be_seen)
{
    const wlr_box usable{0, 0, 1920, 1080};
    const wlr_fbox large = sketch(0, {-500, -500, 5000, 5000}, usable);
    EXPECT_DOUBLE_EQ(large.x, 105);
    EXPECT_DOUBLE_EQ(large.y, 112);
    EXPECT_DOUBLE_EQ(large.x + large.width, 141);
    EXPECT_DOUBLE_EQ(large.y + large.height, 135);
    const wlr_fbox small = sketch(0, {0, 0, 1, 1}, usable);
    EXPECT_DOUBLE_EQ(small.width, 3);
    EXPECT_DOUBLE_EQ(small.height, 2);
    EXPECT_EQ(mt_miniature(0, {5000, 0, 100, 100}, usable), std::nullopt);
    EXPECT_EQ(mt_miniature(0, {0, 0, 100, 100}, {0, 0, 0, 0}), std::nullopt);
}

} // namespace
