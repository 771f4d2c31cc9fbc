// Where the parts of the overview go.

#include "input/overview_boxes.hpp"
#include "support/boxes.hpp"

#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::Eq;
using testing::Optional;

namespace
{

constexpr wlr_box screen{0, 0, 1280, 704}, area{240, 0, 1040, 704};

wlr_box window(int width, int height)
{
    return {0, 0, width, height};
}

TEST(overview_grid, has_one_cell_for_one_window)
{
    const overview_grid grid = overview_grid_in(area, 1);
    EXPECT_EQ(overview_cell(grid, 0), (wlr_box{288, 48, 944, 608}));
    EXPECT_EQ(grid.picture_height, 582);
}

TEST(overview_grid, has_the_smallest_number_of_columns_whose_square_holds_the_windows)
{
    EXPECT_EQ(overview_grid_in(area, 0).columns, 1);
    EXPECT_EQ(overview_grid_in(area, 2).columns, 2);
    EXPECT_EQ(overview_grid_in(area, 4).columns, 2);
    EXPECT_EQ(overview_grid_in(area, 5).columns, 3);
    EXPECT_EQ(overview_grid_in(area, 64).columns, 8);
}

TEST(overview_grid, centers_a_short_last_row)
{
    const overview_grid grid = overview_grid_in(area, 5);
    EXPECT_EQ(overview_cell(grid, 0), (wlr_box{288, 48, 298, 292}));
    EXPECT_EQ(overview_cell(grid, 2), (wlr_box{288 + 2 * 322, 48, 298, 292}));
    EXPECT_EQ(overview_cell(grid, 3), (wlr_box{288 + 161, 364, 298, 292})); // half a step
    EXPECT_EQ(overview_cell(grid, 4), (wlr_box{288 + 161 + 322, 364, 298, 292}));
}

TEST(overview_grid, keeps_cells_visible_in_a_narrow_area)
{
    const overview_grid grid = overview_grid_in({240, 0, 100, 100}, 4);
    EXPECT_EQ(overview_cell(grid, 0), (wlr_box{288, 48, 40, 40}));
    EXPECT_EQ(grid.picture_height, 40); // a title would leave too little
}

TEST(overview_tile, fills_its_cell_in_the_windows_shape)
{
    const overview_grid grid = overview_grid_in(area, 5); // cells of 298 by 292, 26 of them for the title
    EXPECT_EQ(overview_tile(grid, 0, window(1000, 500), screen), (wlr_box{288, 48 + 58, 298, 149}));
    EXPECT_EQ(overview_tile(grid, 0, window(500, 1000), screen), (wlr_box{288 + 82, 48, 133, 266}));
}

TEST(overview_tile, is_not_larger_than_the_window)
{
    const overview_grid grid = overview_grid_in(area, 1);
    EXPECT_EQ(overview_tile(grid, 0, window(200, 100), screen), (wlr_box{660, 289, 200, 100}));
}

TEST(overview_tile, is_not_larger_than_two_thirds_of_the_screen)
{
    const overview_grid grid = overview_grid_in(area, 1);
    EXPECT_EQ(overview_tile(grid, 0, window(1000, 500), screen), (wlr_box{325, 121, 870, 435}));
    EXPECT_EQ(overview_tile(grid, 0, window(900, 900), screen), (wlr_box{521, 100, 478, 478}));
}

TEST(overview_tile, always_has_a_size)
{
    const overview_grid grid = overview_grid_in(area, 1);
    for (const wlr_box &odd : {window(0, 0), window(30000, 1), window(1, 30000), window(5, 0)}) {
        const wlr_box tile = overview_tile(grid, 0, odd, screen);
        EXPECT_GE(tile.width, 1);
        EXPECT_GE(tile.height, 1);
    }
}

TEST(overview_tile, has_its_badge_in_the_upper_right_corner)
{
    EXPECT_EQ(overview_close_badge({100, 50, 300, 200}), (wlr_box{374, 54, 22, 22}));
}

TEST(overview_strip, centers_thumbnails_of_the_screens_shape)
{
    const overview_strip strip = overview_strip_in(screen, screen, 3, false);
    EXPECT_EQ(overview_thumbnail(strip, 0), (wlr_box{18, 168, 204, 112}));
    EXPECT_EQ(overview_thumbnail(strip, 2), (wlr_box{18, 168 + 2 * 128, 204, 112}));
}

TEST(overview_strip, makes_room_for_names)
{
    const overview_strip strip = overview_strip_in(screen, screen, 3, true);
    EXPECT_EQ(overview_thumbnail(strip, 0), (wlr_box{18, 138, 204, 112}));
    EXPECT_EQ(strip.step, 148);
}

TEST(overview_strip, shrinks_thumbnails_in_a_low_area_and_centers_them_in_their_column)
{
    const overview_strip strip = overview_strip_in({0, 30, 1280, 400}, screen, 5, false);
    EXPECT_EQ(overview_thumbnail(strip, 0), (wlr_box{18 + 47, 48, 109, 60}));
    const overview_strip least = overview_strip_in({0, 30, 1280, 50}, screen, 9, false);
    EXPECT_EQ(overview_thumbnail(least, 0), (wlr_box{18 + 95, 48, 14, 8}));
}

TEST(overview_strip, leaves_the_rest_to_the_tiles)
{
    EXPECT_EQ(overview_beside_strip(screen), area);
    EXPECT_EQ(overview_beside_strip({0, 0, 300, 600}), (wlr_box{240, 0, 100, 600}));
}

TEST(overview_strip, sketches_windows_within_the_thumbnail)
{
    const overview_strip strip = overview_strip_in(screen, screen, 3, false);
    EXPECT_THAT(overview_sketch(strip, {100, 50, 641, 352}, screen), Optional(Eq(wlr_box{15, 7, 102, 56})));
    EXPECT_THAT(overview_sketch(strip, {1200, 0, 400, 300}, screen), Optional(Eq(wlr_box{191, 2, 11, 47})));
    EXPECT_THAT(overview_sketch(strip, {0, 0, 5, 5}, screen), Optional(Eq(wlr_box{2, 2, 3, 2})));
    EXPECT_EQ(overview_sketch(strip, {1290, 0, 400, 300}, screen), std::nullopt);
}

//  0 1 2
//   3 4
constexpr std::array<wlr_box, 5> five_tiles{
    {{0, 0, 100, 80}, {120, 0, 100, 80}, {240, 0, 100, 80}, {60, 100, 100, 80}, {180, 100, 100, 80}}};

TEST(overview_neighbour, is_the_nearest_tile_in_the_direction)
{
    EXPECT_EQ(overview_neighbour(five_tiles, 0, 1, 0), 1);
    EXPECT_EQ(overview_neighbour(five_tiles, 2, -1, 0), 1);
    EXPECT_EQ(overview_neighbour(five_tiles, 0, 0, 1), 3);
    EXPECT_EQ(overview_neighbour(five_tiles, 4, 0, -1), 1); // as near as 2, and earlier
}

TEST(overview_neighbour, is_the_tile_itself_at_the_edge)
{
    EXPECT_EQ(overview_neighbour(five_tiles, 0, -1, 0), 0);
    EXPECT_EQ(overview_neighbour(five_tiles, 3, 0, 1), 3);
}

TEST(overview_neighbour, lies_more_than_a_pixel_away)
{
    constexpr std::array<wlr_box, 2> tiles{{{0, 0, 100, 80}, {1, 200, 100, 80}}};
    EXPECT_EQ(overview_neighbour(tiles, 0, 1, 0), 0);
    EXPECT_EQ(overview_neighbour(tiles, 0, 0, 1), 1);
}

TEST(overview_dragged, is_centered_on_the_pointer)
{
    EXPECT_EQ(overview_dragged(window(200, 100), 300, 200), (wlr_box{258, 179, 84, 42}));
    EXPECT_EQ(overview_dragged(window(50, 50), 300, 200), (wlr_box{276, 184, 48, 32}));
}

TEST(overview_between, keeps_a_size)
{
    EXPECT_EQ(overview_between({0, 0, 100, 100}, {200, 100, 50, 10}, 0.5), (wlr_box{100, 50, 75, 55}));
    EXPECT_EQ(overview_between({0, 0, 1, 1}, {0, 0, 0, 0}, 1), (wlr_box{0, 0, 1, 1}));
}

} // namespace
