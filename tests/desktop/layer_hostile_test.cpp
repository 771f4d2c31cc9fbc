// Popups of panels, and panels of clients that send nonsense or too much.

#include "support/layers.hpp"
#include "support/wayland_popup.hpp"

#include <limits>

using test::BOTTOM;
using test::keyboard_wish;
using test::layer_surface;
using test::layer_traits;
using test::layers;
using test::LEFT;
using test::RIGHT;
using test::TOP;
using test::top_bar;
using test::window;
using testing::IsEmpty;

namespace
{

TEST_F(layers, can_not_adopt_the_menu_of_a_window)
{
    window &w = map("page");
    layer_surface &panel = create(w.owner(), top_bar(40));
    test::popup menu{w, {.x = 20, .y = 30}};
    panel.adopt(menu.get());
    EVENTUALLY(w.owner().protocol_error().has_value());
    settle();
    EXPECT_THAT(broken_rules(), IsEmpty());
}

TEST_F(layers, that_adopt_a_menu_that_was_dismissed_are_harmless)
{
    window &w = map("page");
    layer_surface &panel = create(w.owner(), top_bar(40));
    test::popup menu{w, {.x = 20, .y = 30}};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    w.unmap();
    EVENTUALLY(menu.dismissed());
    panel.adopt(menu.get());
    settle();
    EXPECT_THAT(broken_rules(), IsEmpty());
}

// Hostile clients

struct hostile_layers : layers {
    static constexpr int lowest = std::numeric_limits<int>::min();
    static constexpr int highest = std::numeric_limits<int>::max();
};

// The protocol forbids this, but the library lets it pass.
TEST_F(hostile_layers, of_no_size_without_anchors_get_all_that_there_is)
{
    layer_surface &wide = show({.size = {0, 40}, .anchor = TOP | LEFT});
    EXPECT_EQ(box(wide), (wlr_box{0, 0, 1280, 40}));
    layer_surface &all = show({});
    EXPECT_EQ(box(all), (wlr_box{0, 0, 1280, 704}));
}

TEST_F(hostile_layers, with_the_largest_numbers_leave_the_output_a_usable_box)
{
    for (const int zone : {lowest, -1, 0, 1, highest})
        for (const int margin : {lowest, -1, 0, highest})
            for (const uint32_t edges : {0U, 1U, 2U, 4U, 8U, 7U, 11U, 13U, 14U, 15U}) {
                layer_surface &l = create({.size = {30, 30},
                                           .anchor = edges,
                                           .zone = zone,
                                           .margins = {margin, margin, margin, margin}});
                ASSERT_THAT(broken_rules(), IsEmpty()) << zone << ' ' << margin << ' ' << edges;
                ASSERT_EQ(l.owner().error(), 0);
                l.destroy();
                l.owner().vanish();
                settle();
                ASSERT_EQ(usable(), (wlr_box{0, 0, 1280, 704}));
            }
}

TEST_F(hostile_layers, of_enormous_size_are_arranged)
{
    layer_traits traits{.size = {highest, highest}, .anchor = BOTTOM | RIGHT, .opens = false};
    layer_surface &l = create(traits);
    l.auto_draw = false;
    l.commit();
    EVENTUALLY_EQ(l.last_size(), (test::size{highest, highest}));
    l.draw({10, 10});
    settle();
    EXPECT_THAT(broken_rules(), IsEmpty());
    l.size(0x80000000U, 10);
    EVENTUALLY(l.owner().protocol_error().has_value());
}

TEST_F(hostile_layers, that_draw_before_their_first_configure_are_a_protocol_error)
{
    layer_traits traits = top_bar(40);
    traits.opens = false;
    layer_surface &l = create(traits);
    l.draw({1280, 40});
    EVENTUALLY_EQ(l.owner().protocol_error(), (test::protocol_error{"zwlr_layer_surface_v1", 2}));
    EXPECT_TRUE(wl_list_empty(&server.layer_surfaces));
}

TEST_F(hostile_layers, that_change_their_size_while_they_are_unmapped_are_not_told_too_early)
{
    layer_surface &l = show(top_bar(40));
    l.size(200, 60);
    l.anchor(TOP);
    l.unmap();
    l.commit();
    EVENTUALLY_EQ(box(l), (wlr_box{540, 0, 200, 60}));
    EXPECT_EQ(l.owner().error(), 0);
}

TEST_F(hostile_layers, may_go_in_any_state_and_in_any_order)
{
    active_windows = test::activity::may_lag;
    map("witness");
    for (const bool drawn : {false, true})
        for (const bool committed : {false, true})
            for (int end = 0; end < 4; end++) {
                layer_traits traits = top_bar(40);
                traits.keyboard = keyboard_wish::exclusive;
                traits.opens = false;
                layer_surface &l = create(traits);
                l.auto_draw = drawn;
                if (committed || drawn)
                    l.commit();
                settle();
                test::popup menu{l, {.x = 20, .y = 30}};
                settle();
                if (end == 0)
                    l.destroy();
                else if (end == 1)
                    l.destroy_surface();
                else if (end == 2)
                    l.owner().vanish();
                else
                    l.unmap();
                settle();
                ASSERT_THAT(broken_rules(), IsEmpty()) << drawn << committed << end;
                l.owner().vanish();
                settle();
                ASSERT_TRUE(wl_list_empty(&server.layer_surfaces));
                ASSERT_EQ(usable(), (wlr_box{0, 0, 1280, 704}));
            }
}

TEST_F(hostile_layers, may_be_two_hundred)
{
    test::client &c = connect();
    for (int i = 0; i < 200; i++)
        surfaces.emplace_back(c, i % 2 == 0 ? top_bar(1) : layer_traits{.size = {30, 30}, .anchor = TOP});
    settle();
    EXPECT_EQ(wl_list_length(&server.layer_surfaces), 200);
    EXPECT_EQ(usable(), (wlr_box{0, 100, 1280, 604}));
    EXPECT_THAT(broken_rules(), IsEmpty());
    surfaces.clear();
    settle();
    EXPECT_EQ(usable(), (wlr_box{0, 0, 1280, 704}));
}

} // namespace
