// Where the parts of the window switcher go, and which part of a buffer a picture of a window shows.

#include "input/switcher_boxes.hpp"
#include "input/switcher_display.hpp"
#include "presentation/live_picture.hpp"
#include "support/boxes.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;

namespace
{

constexpr wlr_box area{100, 40, 1280, 664};

TEST(switcher_boxes, list_is_in_the_middle)
{
    EXPECT_EQ(switcher_list(area, 3), (wlr_box{100 + 380, 40 + 269, 520, 126}));
}

TEST(switcher_boxes, cards_have_their_full_size_where_there_is_room)
{
    const switcher_cards cards = switcher_cards_in(area, 5);
    EXPECT_EQ(cards.panel, (wlr_box{100 + 44, 40 + 235, 1192, 194}));
    EXPECT_EQ(switcher_card(cards, 0), (wlr_box{18, 18, 220, 158}));
    EXPECT_EQ(switcher_card(cards, 4), (wlr_box{18 + 4 * 234, 18, 220, 158}));
}

TEST(switcher_boxes, cards_shrink_in_a_narrow_area)
{
    const switcher_cards cards = switcher_cards_in({0, 0, 1000, 600}, 5); // 940 of 1192
    EXPECT_EQ(cards.width, 173);
    EXPECT_EQ(cards.gap, 11);
    EXPECT_EQ(cards.picture_height, 104);
    EXPECT_EQ(cards.panel, (wlr_box{27, 217, 945, 166}));
}

TEST(switcher_boxes, twenty_cards_in_a_narrow_area_stay_recognisable_and_pass_its_edges)
{
    const switcher_cards cards = switcher_cards_in({0, 0, 640, 480}, 20);
    EXPECT_EQ(cards.width, 90);
    EXPECT_EQ(cards.picture_height, 54);
    EXPECT_EQ(cards.gap, 1);
    EXPECT_EQ(cards.panel, (wlr_box{-607, 182, 1855, 116}));
    EXPECT_EQ(switcher_cards_in({0, 0, 10, 10}, 2).width, 90); // no room at all
}

TEST(switcher_boxes, pictures_keep_their_windows_shape)
{
    const switcher_cards cards = switcher_cards_in({0, 0, 1280, 704}, 2); // room for 208 by 124
    const int left = cards.panel.x + 24, top = cards.panel.y + 48;
    EXPECT_EQ(switcher_picture(cards, 0, {0, 0, 1000, 500}), (wlr_box{left, top + 10, 208, 104}));
    EXPECT_EQ(switcher_picture(cards, 1, {0, 0, 300, 600}), (wlr_box{left + 234 + 73, top, 62, 124}));
    EXPECT_EQ(switcher_picture(cards, 0, {0, 0, 0, 7}), (wlr_box{left + 42, top, 124, 124}));
    EXPECT_EQ(switcher_picture(cards, 0, {0, 0, 9000, 1}), (wlr_box{left, top + 61, 208, 1}));
}

TEST(switcher_boxes, frame_surrounds_the_window_and_its_bar)
{
    EXPECT_THAT(switcher_frame({100, 200, 400, 300}, 30),
                ElementsAre(wlr_box{97, 167, 406, 3}, wlr_box{97, 500, 406, 3}, wlr_box{97, 170, 3, 330},
                            wlr_box{500, 170, 3, 330}));
}

TEST(switcher_texts, name_the_application_and_the_title)
{
    EXPECT_EQ(switcher_row_text("foot", "shell", false), "foot  —  shell");
    EXPECT_EQ(switcher_row_text("foot", "shell", true), "foot  —  shell  (minimized)");
    EXPECT_EQ(switcher_row_text("foot", "", true), "foot  (minimized)");
    EXPECT_EQ(switcher_row_text(nullptr, nullptr, false), "?");
    EXPECT_EQ(switcher_row_text("a", std::string(500, 't').c_str(), false).size(), 199U);
    EXPECT_EQ(switcher_card_text("foot", "shell", true), "shell  (min)");
    EXPECT_EQ(switcher_card_text("foot", nullptr, false), "foot");
    EXPECT_EQ(switcher_card_text(nullptr, "", true), "?  (min)");
}

struct part {
    double x, y, width, height;
    friend bool operator==(const part &, const part &) = default;
};

part shown(const wlr_box &geometry, const wlr_fbox &source, wl_output_transform transform)
{
    const wlr_fbox box = live_picture_source(geometry, 100, 50, source, transform);
    return {box.x, box.y, box.width, box.height};
}

TEST(live_picture, shows_the_window_without_the_shadow_that_its_client_draws)
{
    constexpr auto normal = WL_OUTPUT_TRANSFORM_NORMAL;
    EXPECT_EQ(shown({10, 5, 80, 40}, {0, 0, 100, 50}, normal), (part{10, 5, 80, 40}));
    EXPECT_EQ(shown({10, 5, 80, 40}, {0, 0, 200, 100}, normal), (part{20, 10, 160, 80}));
    EXPECT_EQ(shown({10, 5, 80, 40}, {30, 40, 200, 100}, normal), (part{50, 50, 160, 80})); // a viewport
    EXPECT_EQ(shown({-10, 0, 300, 300}, {0, 0, 100, 50}, normal), (part{0, 0, 100, 50}));
    EXPECT_EQ(shown({500, 500, 10, 10}, {0, 0, 100, 50}, normal), (part{0, 0, 100, 50}));
}

TEST(live_picture, turns_the_part_as_the_client_turns_its_buffer)
{
    // The buffer is 50 wide and 100 high.
    EXPECT_EQ(shown({10, 5, 80, 40}, {0, 0, 50, 100}, WL_OUTPUT_TRANSFORM_90), (part{5, 10, 40, 80}));
    EXPECT_EQ(shown({10, 0, 90, 50}, {0, 0, 100, 50}, WL_OUTPUT_TRANSFORM_180), (part{0, 0, 90, 50}));
    EXPECT_EQ(shown({10, 0, 90, 50}, {0, 0, 100, 50}, WL_OUTPUT_TRANSFORM_FLIPPED), (part{0, 0, 90, 50}));
}

} // namespace
