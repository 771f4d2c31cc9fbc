// Keys and buttons in the overview, and what clients hear of them.

#include "support/overview.hpp"
#include "support/wayland_constraints.hpp"

#include "input/interactive.hpp"

using test::seat;
using test::window;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace
{

using overview_input = test::overview_desk;

TEST_F(overview_input, selects_by_arrows_and_tab)
{
    map_windows({"e", "d", "c", "b", "a"}); // a b c above d e
    open();
    EXPECT_EQ(selected(), "");
    EXPECT_FALSE(ring_shows());
    keyboard->tap(KEY_RIGHT); // nothing was selected, so this selects the window raised last
    EXPECT_EQ(selected(), "a");
    EXPECT_TRUE(ring_shows());
    EXPECT_EQ(server.overview.ring->node.x, item("a").rect.x - 3);
    EXPECT_EQ(server.overview.ring->width, item("a").rect.width + 6);
    keyboard->tap(KEY_RIGHT);
    EXPECT_EQ(selected(), "b");
    keyboard->tap(KEY_DOWN);
    EXPECT_EQ(selected(), "d");
    keyboard->tap(KEY_LEFT);
    EXPECT_EQ(selected(), "a"); // in the row above, and the only one to the left
    for (const char *next : {"b", "c", "d", "e", "a"}) {
        keyboard->tap(KEY_TAB);
        EXPECT_EQ(selected(), next);
    }
    keyboard->tap(KEY_ESC);
    EXPECT_TRUE(is_closed());
    EXPECT_EQ(focused(), "a");
}

TEST_F(overview_input, tab_selects_the_first_tile_first)
{
    map_windows({"b", "a"});
    open();
    keyboard->tap(KEY_TAB);
    EXPECT_EQ(selected(), "a");
    keyboard->tap(KEY_ESC);
}

TEST_F(overview_input, picks_the_selected_window_by_enter_and_by_space)
{
    map_windows({"b", "a"});
    for (const uint32_t key : {uint32_t{KEY_ENTER}, uint32_t{KEY_KPENTER}, uint32_t{KEY_SPACE}}) {
        open();
        keyboard->tap(key); // nothing is selected
        ASSERT_TRUE(server.overview.active);
        const std::string other = items().at(1);
        keyboard->tap(KEY_TAB);
        keyboard->tap(KEY_TAB);
        keyboard->tap(key);
        EXPECT_TRUE(is_closed());
        EXPECT_EQ(focused(), other);
        EXPECT_TRUE(has_keyboard(*windows[other]));
    }
}

TEST_F(overview_input, keeps_every_key_from_clients_and_bindings)
{
    map_windows({"a"});
    seat ears{windows["a"]->owner()};
    settle();
    open();
    (void)ears.take();
    keyboard->tap(KEY_X);
    keyboard->press(KEY_LEFTMETA);
    keyboard->tap(KEY_2); // would show workspace 2
    keyboard->release(KEY_LEFTMETA);
    settle();
    for (const std::string &event : ears.take())
        EXPECT_THAT(event, Not(testing::StartsWith("key ")));
    EXPECT_EQ(output("A").current_ws->num, 1);
    EXPECT_THAT(heard(), Not(Contains(VNT_EVT_LAUNCHER)));
    overview_exit(server);
}

// Otherwise it would believe that the key is still down, and repeat it.
TEST_F(overview_input, tells_the_client_that_no_key_is_down_when_it_closes)
{
    map_windows({"a"});
    seat ears{windows["a"]->owner()};
    settle();
    keyboard->press(KEY_X);
    open();
    keyboard->release(KEY_X);
    (void)ears.take();
    keyboard->tap(KEY_ESC);
    settle();
    const std::vector<std::string> events = ears.take();
    EXPECT_THAT(events, Contains("keys leave a"));
    EXPECT_THAT(events, Contains(testing::StartsWith("keys enter a")));
    EXPECT_TRUE(has_keyboard(*windows["a"]));
}

TEST_F(overview_input, picks_a_window_by_a_click)
{
    map_windows({"b", "a"});
    open();
    point_at_middle(item("b").rect);
    EXPECT_EQ(selected(), "b");
    click();
    EXPECT_TRUE(is_closed());
    EXPECT_EQ(focused(), "b");
}

TEST_F(overview_input, gives_the_focus_back_after_a_click_beside_the_tiles)
{
    map_windows({"b", "a"});
    open();
    click();
    EXPECT_TRUE(is_closed());
    EXPECT_EQ(focused(), "a");
}

TEST_F(overview_input, keeps_motion_and_buttons_from_clients)
{
    map_windows({"a"});
    place(*windows["a"], 600, 300);
    seat ears{windows["a"]->owner()};
    point_at(*pointer, 650, 350);
    settle();
    (void)ears.take();
    open();
    EXPECT_THAT(ears.take(), Contains("pointer leave a"));
    point_at(*pointer, 660, 360);
    click(BTN_RIGHT);
    settle();
    EXPECT_TRUE(is_closed()); // the right button pressed nothing
    for (const std::string &event : ears.take())
        EXPECT_THAT(event, Not(testing::StartsWith("button")));
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(*windows["a"])));
}

TEST_F(overview_input, passes_on_the_release_of_a_button_that_was_pressed_before)
{
    map_windows({"a"});
    place(*windows["a"], 600, 300);
    point_at(*pointer, 650, 350);
    pointer->press(BTN_LEFT);
    open();
    pointer->release(BTN_LEFT);
    EXPECT_TRUE(server.overview.active);
    EXPECT_EQ(server.seat->pointer_state.button_count, 0U);
    click();
    EXPECT_TRUE(is_closed());
}

TEST_F(overview_input, closes_a_window_by_its_badge_and_follows)
{
    map_windows({"b", "a"});
    open();
    point_at_middle(item("b").close_rect);
    click();
    EVENTUALLY(windows["b"]->closes() == 1);
    EXPECT_TRUE(server.overview.active);
    windows["b"]->destroy();
    EVENTUALLY_EQ(items(), std::vector<std::string>{"a"});
    EXPECT_EQ(item("a").rect, (wlr_box{660, 289, 200, 100}));
    EXPECT_TRUE(server.overview.active);
    overview_exit(server);
}

TEST_F(overview_input, forgets_a_window_that_goes_while_it_is_pressed_or_dragged)
{
    for (const bool drags : {false, true}) {
        map_windows({"b", "a"});
        open();
        point_at_middle(item("b").rect);
        pointer->press(BTN_LEFT);
        if (drags)
            point_at(*pointer, 700, 650);
        EXPECT_EQ(server.overview.drag, drags);
        windows["b"]->destroy();
        EVENTUALLY_EQ(items(), std::vector<std::string>{"a"});
        point_at(*pointer, 710, 650);
        pointer->release(BTN_LEFT);
        EXPECT_TRUE(server.overview.active);
        overview_exit(server);
        windows["a"]->destroy();
        EVENTUALLY(focused_toplevel(server) == nullptr);
    }
}

TEST_F(overview_input, changes_the_workspace_by_a_click_in_the_strip_and_stays)
{
    map_windows({"b", "a"});
    open();
    point_at_workspace(2);
    click();
    EXPECT_EQ(output("A").current_ws->num, 2);
    EXPECT_TRUE(server.overview.active);
    EXPECT_THAT(items(), IsEmpty());
    point_at_workspace(2);
    click(); // on the current one
    EXPECT_TRUE(is_closed());
    EXPECT_EQ(output("A").current_ws->num, 2);
    EXPECT_EQ(keyboard_focus(), nullptr); // no window can be seen
}

TEST_F(overview_input, moves_a_window_by_dragging_it_to_the_strip)
{
    map_windows({"b", "a"});
    open();
    drag_to_workspace("b", 2);
    EXPECT_EQ(record(*windows["b"]).workspace->num, 2);
    EXPECT_THAT(items(), ElementsAre("a"));
    EXPECT_TRUE(server.overview.active);
    drag_to_workspace("a", 2);
    EXPECT_THAT(items(), IsEmpty());
    overview_exit(server);
    EXPECT_EQ(output("A").current_ws->num, 1);
}

TEST_F(overview_input, takes_a_tile_back_that_is_dropped_on_its_own_workspace_or_beside_the_strip)
{
    map_windows({"b", "a"});
    open();
    const wlr_box tile = item("b").rect;
    drag_to_workspace("b", 1);
    EXPECT_EQ(record(*windows["b"]).workspace->num, 1);
    EXPECT_EQ(item("b").node->node.x, tile.x);
    point_at_middle(item("b").rect);
    pointer->press(BTN_LEFT);
    point_at(*pointer, 700, 690);
    pointer->release(BTN_LEFT);
    EXPECT_EQ(record(*windows["b"]).workspace->num, 1);
    EXPECT_EQ(item("b").node->node.x, tile.x);
    EXPECT_EQ(item("b").node->dst_width, tile.width);
    EXPECT_TRUE(server.overview.active);
    overview_exit(server);
}

TEST_F(overview_input, drags_a_tile_only_after_more_than_seven_pixels)
{
    map_windows({"a"});
    open();
    const wlr_box tile = item("a").rect;
    const int x = tile.x + 50, y = tile.y + 50;
    point_at(*pointer, x, y);
    pointer->press(BTN_LEFT);
    point_at(*pointer, x + 7, y);
    EXPECT_FALSE(server.overview.drag);
    EXPECT_EQ(item("a").node->dst_width, 200);
    point_at(*pointer, x + 7, y + 1);
    EXPECT_TRUE(server.overview.drag);
    EXPECT_EQ(item("a").node->dst_width, 84);
    EXPECT_EQ(item("a").node->dst_height, 42);
    EXPECT_EQ(item("a").node->node.x, x + 7 - 42);
    EXPECT_EQ(item("a").node->opacity, 0.9F);
    EXPECT_STREQ(server.cursor_shown.cur_cursor_name.data(), "grabbing");
    pointer->press(BTN_RIGHT); // does not disturb it
    point_at_workspace(2);
    EXPECT_TRUE(ring_shows());
    EXPECT_EQ(server.overview.ring->width, 204 + 10);
    pointer->release(BTN_LEFT);
    EXPECT_EQ(record(*windows["a"]).workspace->num, 2);
    overview_exit(server);
}

TEST_F(overview_input, counts_seven_pixels_as_a_click)
{
    map_windows({"b", "a"});
    open();
    const wlr_box tile = item("b").rect;
    point_at(*pointer, tile.x + 50, tile.y + 50);
    pointer->press(BTN_LEFT);
    point_at(*pointer, tile.x + 57, tile.y + 50);
    pointer->release(BTN_LEFT);
    EXPECT_TRUE(is_closed());
    EXPECT_EQ(focused(), "b");
}

TEST_F(overview_input, gives_the_keyboard_to_a_window_that_can_be_seen)
{
    map_windows({"b", "a"});
    open();
    drag_to_workspace("a", 2); // it had the keyboard
    point_at(*pointer, 700, 690);
    click();
    EXPECT_TRUE(is_closed());
    EXPECT_TRUE(has_keyboard(*windows["b"]));
}

TEST_F(overview_input, ends_a_drag_that_is_under_way)
{
    map_windows({"a"});
    place(*windows["a"], 600, 300);
    keyboard->press(KEY_LEFTMETA);
    point_at(*pointer, 650, 350);
    pointer->press(BTN_LEFT);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_MOVE);
    keyboard->tap(KEY_A);
    EXPECT_TRUE(server.overview.active);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    pointer->release(BTN_LEFT);
    EXPECT_TRUE(server.overview.active); // the press belonged to the drag
    overview_exit(server);
}

TEST_F(overview_input, frees_a_pointer_that_a_client_has_locked)
{
    map_windows({"a"});
    place(*windows["a"], 600, 300);
    point_at(*pointer, 650, 350);
    settle();
    seat ears{windows["a"]->owner()};
    settle();
    const test::locked_pointer lock{ears, windows["a"]->get()};
    EVENTUALLY(server.active_constraint != nullptr);
    open();
    EXPECT_EQ(server.active_constraint, nullptr);
    point_at(*pointer, 660, 360);
    EXPECT_EQ(server.cursor->x, 660);
    overview_exit(server);
    EVENTUALLY(server.active_constraint != nullptr);
}

TEST_F(overview_input, gives_no_client_the_pointer)
{
    map_windows({"a"});
    place(*windows["a"], 600, 300);
    point_at(*pointer, 650, 350);
    seat ears{windows["a"]->owner()};
    settle();
    open();
    const test::locked_pointer lock{ears, windows["a"]->get()};
    settle();
    EXPECT_EQ(server.active_constraint, nullptr);
    begin_interactive(record(*windows["a"]), VANTORE_CURSOR_MOVE, 0);
    EXPECT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_PASSTHROUGH);
    overview_exit(server);
    EVENTUALLY(server.active_constraint != nullptr);
}

TEST_F(overview_input, keeps_the_selection_where_the_desktop_changes_under_a_resting_pointer)
{
    map_windows({"b", "a"});
    open();
    keyboard->tap(KEY_TAB);
    EXPECT_EQ(selected(), "a");
    map("another");
    settle();
    EXPECT_EQ(selected(), "a");
    keyboard->tap(KEY_ENTER);
    EXPECT_EQ(focused(), "a");
}

TEST_F(overview_input, picks_no_window_that_nobody_can_see_any_more)
{
    map_windows({"a"});
    open();
    keyboard->tap(KEY_TAB);
    command("workspace 2");
    keyboard->tap(KEY_ENTER);
    EXPECT_TRUE(is_closed());
    EXPECT_EQ(keyboard_focus(), nullptr);
}

} // namespace
