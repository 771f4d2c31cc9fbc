// The boxes of tiles, from tables that were worked out by hand from the rules of each mode.

#include "workspaces/tile_boxes.hpp"

#include "support/boxes.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numeric>
#include <vector>

using testing::Each;
using testing::ElementsAre;

namespace
{

std::vector<wlr_box> boxes(const tile_rules &rules, const std::vector<tile_weight> &weights)
{
    std::vector<wlr_box> result(weights.size());
    tile_boxes(rules, weights, result);
    return result;
}

std::vector<tile_weight> plain(size_t count)
{
    return std::vector<tile_weight>(count);
}

const std::vector<tile_weight> uneven{{1.15, 0.5}, {0.3, 2.0}, {5.0, 0}, {0, 1.3}, {2.5, 0}};
// What a panel of 31 pixels and gaps of 8 leave of a screen of 1366x768.
constexpr wlr_box laptop{.x = 8, .y = 39, .width = 1350, .height = 721};

struct tiles_case {
    tile_rules rules;
    std::vector<tile_weight> weights;
    std::vector<wlr_box> boxes;
};

class tiles : public testing::TestWithParam<tiles_case>
{
};

TEST_P(tiles, lie_where_the_table_says)
{
    EXPECT_EQ(boxes(GetParam().rules, GetParam().weights), GetParam().boxes);
}

// One to nine windows on a laptop.
const tiles_case one_to_nine[]{
    {{.mode = TM_MASTER, .area = laptop, .gap = 8, .master_ratio = 0.55}, plain(1), {{8, 39, 1350, 721}}},
    {{.mode = TM_MASTER, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(2),
     {{8, 39, 738, 721}, {754, 39, 604, 721}}},
    {{.mode = TM_MASTER, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(3),
     {{8, 39, 738, 721}, {754, 39, 604, 356}, {754, 403, 604, 357}}},
    {{.mode = TM_MASTER, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(4),
     {{8, 39, 738, 721}, {754, 39, 604, 235}, {754, 282, 604, 235}, {754, 525, 604, 235}}},
    {{.mode = TM_MASTER, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(5),
     {{8, 39, 738, 721},
      {754, 39, 604, 174},
      {754, 221, 604, 174},
      {754, 403, 604, 174},
      {754, 585, 604, 175}}},
    {{.mode = TM_MASTER, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(6),
     {{8, 39, 738, 721},
      {754, 39, 604, 137},
      {754, 184, 604, 137},
      {754, 329, 604, 137},
      {754, 474, 604, 137},
      {754, 619, 604, 141}}},
    {{.mode = TM_MASTER, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(7),
     {{8, 39, 738, 721},
      {754, 39, 604, 113},
      {754, 160, 604, 113},
      {754, 281, 604, 113},
      {754, 402, 604, 113},
      {754, 523, 604, 113},
      {754, 644, 604, 116}}},
    {{.mode = TM_MASTER, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(8),
     {{8, 39, 738, 721},
      {754, 39, 604, 96},
      {754, 143, 604, 96},
      {754, 247, 604, 96},
      {754, 351, 604, 96},
      {754, 455, 604, 96},
      {754, 559, 604, 96},
      {754, 663, 604, 97}}},
    {{.mode = TM_MASTER, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(9),
     {{8, 39, 738, 721},
      {754, 39, 604, 83},
      {754, 130, 604, 83},
      {754, 221, 604, 83},
      {754, 312, 604, 83},
      {754, 403, 604, 83},
      {754, 494, 604, 83},
      {754, 585, 604, 83},
      {754, 676, 604, 84}}},
    {{.mode = TM_GRID, .area = laptop, .gap = 8, .master_ratio = 0.55}, plain(1), {{8, 39, 1350, 721}}},
    {{.mode = TM_GRID, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(2),
     {{8, 39, 671, 721}, {687, 39, 671, 721}}},
    {{.mode = TM_GRID, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(3),
     {{8, 39, 671, 356}, {687, 39, 671, 356}, {8, 403, 1350, 357}}},
    {{.mode = TM_GRID, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(4),
     {{8, 39, 671, 356}, {687, 39, 671, 356}, {8, 403, 671, 357}, {687, 403, 671, 357}}},
    {{.mode = TM_GRID, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(5),
     {{8, 39, 444, 356}, {460, 39, 444, 356}, {912, 39, 446, 356}, {8, 403, 671, 357}, {687, 403, 671, 357}}},
    {{.mode = TM_GRID, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(6),
     {{8, 39, 444, 356},
      {460, 39, 444, 356},
      {912, 39, 446, 356},
      {8, 403, 444, 357},
      {460, 403, 444, 357},
      {912, 403, 446, 357}}},
    {{.mode = TM_GRID, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(7),
     {{8, 39, 444, 235},
      {460, 39, 444, 235},
      {912, 39, 446, 235},
      {8, 282, 444, 235},
      {460, 282, 444, 235},
      {912, 282, 446, 235},
      {8, 525, 1350, 235}}},
    {{.mode = TM_GRID, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(8),
     {{8, 39, 444, 235},
      {460, 39, 444, 235},
      {912, 39, 446, 235},
      {8, 282, 444, 235},
      {460, 282, 444, 235},
      {912, 282, 446, 235},
      {8, 525, 671, 235},
      {687, 525, 671, 235}}},
    {{.mode = TM_GRID, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(9),
     {{8, 39, 444, 235},
      {460, 39, 444, 235},
      {912, 39, 446, 235},
      {8, 282, 444, 235},
      {460, 282, 444, 235},
      {912, 282, 446, 235},
      {8, 525, 444, 235},
      {460, 525, 444, 235},
      {912, 525, 446, 235}}},
    {{.mode = TM_COLUMNS, .area = laptop, .gap = 8, .master_ratio = 0.55}, plain(1), {{8, 39, 1350, 721}}},
    {{.mode = TM_COLUMNS, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(2),
     {{8, 39, 671, 721}, {687, 39, 671, 721}}},
    {{.mode = TM_COLUMNS, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(3),
     {{8, 39, 444, 721}, {460, 39, 444, 721}, {912, 39, 446, 721}}},
    {{.mode = TM_COLUMNS, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(4),
     {{8, 39, 331, 721}, {347, 39, 331, 721}, {686, 39, 331, 721}, {1025, 39, 333, 721}}},
    {{.mode = TM_COLUMNS, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(5),
     {{8, 39, 263, 721},
      {279, 39, 263, 721},
      {550, 39, 263, 721},
      {821, 39, 263, 721},
      {1092, 39, 266, 721}}},
    {{.mode = TM_COLUMNS, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(6),
     {{8, 39, 218, 721},
      {234, 39, 218, 721},
      {460, 39, 218, 721},
      {686, 39, 218, 721},
      {912, 39, 218, 721},
      {1138, 39, 220, 721}}},
    {{.mode = TM_COLUMNS, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(7),
     {{8, 39, 186, 721},
      {202, 39, 186, 721},
      {396, 39, 186, 721},
      {590, 39, 186, 721},
      {784, 39, 186, 721},
      {978, 39, 186, 721},
      {1172, 39, 186, 721}}},
    {{.mode = TM_COLUMNS, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(8),
     {{8, 39, 161, 721},
      {177, 39, 161, 721},
      {346, 39, 161, 721},
      {515, 39, 161, 721},
      {684, 39, 161, 721},
      {853, 39, 161, 721},
      {1022, 39, 161, 721},
      {1191, 39, 167, 721}}},
    {{.mode = TM_COLUMNS, .area = laptop, .gap = 8, .master_ratio = 0.55},
     plain(9),
     {{8, 39, 142, 721},
      {158, 39, 142, 721},
      {308, 39, 142, 721},
      {458, 39, 142, 721},
      {608, 39, 142, 721},
      {758, 39, 142, 721},
      {908, 39, 142, 721},
      {1058, 39, 142, 721},
      {1208, 39, 150, 721}}},
};
INSTANTIATE_TEST_SUITE_P(one_to_nine, tiles, testing::ValuesIn(one_to_nine));

// Uneven weights and odd sizes, no gaps and large ones, areas narrower than the gaps.
const tiles_case odd_ones[]{
    {{.mode = TM_MASTER, .area = tile_area({1921, 3, 1279, 1021}, 8), .gap = 8, .master_ratio = 0.55},
     uneven,
     {{1929, 11, 690, 1005},
      {2627, 11, 565, 33},
      {2627, 52, 565, 557},
      {2627, 617, 565, 111},
      {2627, 736, 565, 280}}},
    {{.mode = TM_GRID, .area = tile_area({1921, 3, 1279, 1021}, 8), .gap = 8, .master_ratio = 0.55},
     uneven,
     {{1929, 11, 222, 604},
      {2159, 11, 58, 604},
      {2225, 11, 967, 604},
      {1929, 623, 358, 393},
      {2295, 623, 897, 393}}},
    {{.mode = TM_COLUMNS, .area = tile_area({1921, 3, 1279, 1021}, 8), .gap = 8, .master_ratio = 0.55},
     uneven,
     {{1929, 11, 142, 1005},
      {2079, 11, 37, 1005},
      {2124, 11, 618, 1005},
      {2750, 11, 123, 1005},
      {2881, 11, 311, 1005}}},
    {{.mode = TM_MASTER, .area = tile_area({10, 20, 1281, 799}, 0), .gap = 0, .master_ratio = 0.55},
     plain(5),
     {{10, 20, 704, 799},
      {714, 20, 577, 199},
      {714, 219, 577, 199},
      {714, 418, 577, 199},
      {714, 617, 577, 202}}},
    {{.mode = TM_GRID, .area = tile_area({10, 20, 1281, 799}, 0), .gap = 0, .master_ratio = 0.55},
     plain(5),
     {{10, 20, 427, 399},
      {437, 20, 427, 399},
      {864, 20, 427, 399},
      {10, 419, 640, 400},
      {650, 419, 641, 400}}},
    {{.mode = TM_COLUMNS, .area = tile_area({10, 20, 1281, 799}, 0), .gap = 0, .master_ratio = 0.55},
     plain(5),
     {{10, 20, 256, 799},
      {266, 20, 256, 799},
      {522, 20, 256, 799},
      {778, 20, 256, 799},
      {1034, 20, 257, 799}}},
    {{.mode = TM_MASTER, .area = tile_area({10, 20, 1281, 799}, 200), .gap = 200, .master_ratio = 0.55},
     plain(5),
     {{210, 220, 384, 399}, {794, 220, 297, 1}, {794, 421, 297, 1}, {794, 622, 297, 1}, {794, 823, 297, 1}}},
    {{.mode = TM_GRID, .area = tile_area({10, 20, 1281, 799}, 200), .gap = 200, .master_ratio = 0.55},
     plain(5),
     {{210, 220, 160, 99},
      {570, 220, 160, 99},
      {930, 220, 161, 99},
      {210, 519, 340, 100},
      {750, 519, 341, 100}}},
    {{.mode = TM_COLUMNS, .area = tile_area({10, 20, 1281, 799}, 200), .gap = 200, .master_ratio = 0.55},
     plain(5),
     {{210, 220, 16, 399},
      {426, 220, 16, 399},
      {642, 220, 16, 399},
      {858, 220, 16, 399},
      {1074, 220, 17, 399}}},
    {{.mode = TM_MASTER, .area = tile_area({0, 0, 300, 150}, 200), .gap = 200, .master_ratio = 0.55},
     plain(5),
     {{200, 200, 1, 1}, {300, 200, 1, 1}, {300, 401, 1, 1}, {300, 602, 1, 1}, {300, 803, 1, 1}}},
    {{.mode = TM_GRID, .area = tile_area({0, 0, 300, 150}, 200), .gap = 200, .master_ratio = 0.55},
     plain(5),
     {{200, 200, 1, -99}, {267, 200, 1, -99}, {334, 200, 1, -99}, {200, 301, 1, -100}, {301, 301, 1, -100}}},
    {{.mode = TM_COLUMNS, .area = tile_area({0, 0, 300, 150}, 200), .gap = 200, .master_ratio = 0.55},
     plain(5),
     {{200, 200, 1, 1}, {241, 200, 1, 1}, {282, 200, 1, 1}, {323, 200, 1, 1}, {364, 200, 1, 1}}},
    {{.mode = TM_MASTER, .area = tile_area({0, 0, 7, 9}, 1), .gap = 1, .master_ratio = 0.1},
     plain(4),
     {{1, 1, 1, 7}, {2, 1, 4, 1}, {2, 3, 4, 1}, {2, 5, 4, 3}}},
    {{.mode = TM_MASTER, .area = tile_area({0, 0, 7, 9}, 1), .gap = 1, .master_ratio = 0.9},
     plain(4),
     {{1, 1, 4, 7}, {6, 1, 1, 1}, {6, 3, 1, 1}, {6, 5, 1, 3}}},
};
INSTANTIATE_TEST_SUITE_P(odd_ones, tiles, testing::ValuesIn(odd_ones));

TEST(tile_area, is_the_usable_box_without_a_gap_all_around)
{
    EXPECT_EQ(tile_area({0, 31, 1366, 737}, 8), laptop);
}

TEST(tile_area, is_at_least_one_pixel_large)
{
    EXPECT_EQ(tile_area({0, 0, 300, 150}, 200), (wlr_box{200, 200, 1, 1}));
    EXPECT_EQ(tile_area({5, 6, 0, 0}, 0), (wlr_box{5, 6, 1, 1}));
}

TEST(tiles_in_master_mode, share_a_full_screen_of_four)
{
    const tile_rules rules{
        .mode = TM_MASTER, .area = tile_area({0, 0, 1920, 1080}, 8), .gap = 8, .master_ratio = 0.55};
    EXPECT_THAT(boxes(rules, plain(4)),
                ElementsAre(wlr_box{8, 8, 1043, 1064}, wlr_box{1059, 8, 853, 349},
                            wlr_box{1059, 365, 853, 349}, wlr_box{1059, 722, 853, 350}));
}

TEST(tiles_in_master_mode, give_a_single_window_everything_whatever_the_ratio)
{
    for (const double ratio : {0.1, 0.55, 0.9})
        EXPECT_THAT(boxes({.mode = TM_MASTER, .area = laptop, .gap = 8, .master_ratio = ratio}, plain(1)),
                    ElementsAre(laptop));
}

TEST(tiles_in_monocle_mode, all_take_everything)
{
    for (size_t count = 1; count <= 9; count++)
        EXPECT_THAT(boxes({.mode = TM_MONOCLE, .area = laptop, .gap = 8, .master_ratio = 0.55}, plain(count)),
                    Each(laptop));
}

TEST(tiles_in_the_grid, of_two_windows_are_two_columns)
{
    const tile_rules grid{.mode = TM_GRID, .area = laptop, .gap = 8};
    const tile_rules columns{.mode = TM_COLUMNS, .area = laptop, .gap = 8};
    EXPECT_EQ(boxes(grid, plain(2)), boxes(columns, plain(2)));
}

TEST(tiles_in_the_grid, of_three_windows_span_the_second_row_with_the_third)
{
    const auto three = boxes({.mode = TM_GRID, .area = laptop, .gap = 8}, plain(3));
    EXPECT_EQ(three[0].y, three[1].y);
    EXPECT_EQ(three[2].width, laptop.width);
}

TEST(tiles_in_the_grid, of_five_windows_spread_the_last_two_over_the_whole_width)
{
    const auto five = boxes({.mode = TM_GRID, .area = tile_area({0, 0, 1920, 1080}, 8), .gap = 8}, plain(5));
    EXPECT_THAT(five,
                ElementsAre(wlr_box{8, 8, 629, 528}, wlr_box{645, 8, 629, 528}, wlr_box{1282, 8, 630, 528},
                            wlr_box{8, 544, 948, 528}, wlr_box{964, 544, 948, 528}));
}

TEST(tiles_in_the_grid, do_not_shrink_a_row_below_its_even_share)
{
    const tile_rules grid{.mode = TM_GRID, .area = laptop, .gap = 8};
    EXPECT_EQ(boxes(grid, {{0, 0.5}, {0, 0.5}, {0, 0}}), boxes(grid, plain(3)));
}

TEST(tiles_in_the_grid, double_the_share_of_a_row_with_weight_2)
{
    const auto three = boxes({.mode = TM_GRID, .area = {0, 0, 100, 90}}, {{0, 2.0}, {0, 0}, {0, 0}});
    EXPECT_EQ(three[0].height, 60);
    EXPECT_EQ(three[1].height, 60);
    EXPECT_EQ(three[2].height, 30);
}

TEST(tiles_in_columns, of_half_the_weight_get_a_fifth_beside_two_others)
{
    const auto three =
        boxes({.mode = TM_COLUMNS, .area = {0, 0, 521, 10}, .gap = 8}, {{0.5, 0}, {0, 0}, {0, 0}});
    // The three columns share 505 pixels as 101, 202 and 202.
    EXPECT_THAT(three,
                ElementsAre(wlr_box{0, 0, 101, 10}, wlr_box{109, 0, 202, 10}, wlr_box{319, 0, 202, 10}));
}

TEST(tiles_in_columns, leave_the_lost_pixels_to_the_last)
{
    const auto three =
        boxes({.mode = TM_COLUMNS, .area = {0, 0, 524, 10}, .gap = 8}, {{0.5, 0}, {0, 0}, {0, 0}});
    EXPECT_THAT(three,
                ElementsAre(wlr_box{0, 0, 101, 10}, wlr_box{109, 0, 203, 10}, wlr_box{320, 0, 204, 10}));
}

TEST(tiles_in_any_mode, of_no_windows_are_none)
{
    for (const vantore_tile_mode mode : {TM_MASTER, TM_GRID, TM_COLUMNS, TM_MONOCLE})
        tile_boxes({.mode = mode, .area = laptop, .gap = 8}, {}, {});
}

} // namespace
