// The overview, by keys, by the pointer and over IPC.

#include "support/desktop.hpp"
#include "support/wayland_constraints.hpp"

#include "config/settings.hpp"
#include "input/interactive.hpp"
#include "input/overview.hpp"
#include "reload.hpp"
#include "session/lock.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"
#include "workspaces/switch.hpp"
#include "workspaces/transfer.hpp"

#include <array>
#include <linux/input-event-codes.h>
#include <set>

using test::made_up_keyboard;
using test::made_up_pointer;
using test::seat;
using test::window;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace
{

struct overview : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        keyboard = &plug_keyboard();
        pointer = &plug_pointer();
        point_at(*pointer, 700, 690);
    }
    // The last one is raised last.
    void map_windows(const std::vector<std::string> &names)
    {
        for (const std::string &name : names)
            windows[name] = &map(name, {200, 100});
        settle();
    }
    void open()
    {
        overview_toggle(server);
        ASSERT_TRUE(server.overview.active);
        settle();
    }
    std::vector<std::string> items()
    {
        std::vector<std::string> names;
        names.reserve(server.overview.items.size());
        for (const overview_item &item : server.overview.items)
            names.emplace_back(tl_app_id(*item.t));
        return names;
    }
    const overview_item &item(const std::string &name)
    {
        for (const overview_item &item : server.overview.items)
            if (tl_app_id(*item.t) == name)
                return item;
        ADD_FAILURE() << "no item " << name;
        std::abort();
    }
    std::vector<int> strip()
    {
        std::vector<int> numbers;
        numbers.reserve(server.overview.ws_items.size());
        for (const overview_workspace &ws : server.overview.ws_items)
            numbers.push_back(ws.workspace->num);
        return numbers;
    }
    void point_at_middle(const wlr_box &box)
    {
        point_at(*pointer, box.x + box.width / 2.0, box.y + box.height / 2.0);
    }
    void point_at_workspace(int num)
    {
        for (const overview_workspace &ws : server.overview.ws_items)
            if (ws.workspace->num == num)
                return point_at_middle(ws.box);
        ADD_FAILURE() << "no workspace " << num;
    }
    void click(uint32_t button = BTN_LEFT) const
    {
        pointer->press(button);
        pointer->release(button);
    }
    void drag_to_workspace(const std::string &name, int num)
    {
        point_at_middle(item(name).rect);
        pointer->press(BTN_LEFT);
        point_at_workspace(num);
        pointer->release(BTN_LEFT);
    }
    std::string selected()
    {
        const int sel = server.overview.sel;
        return sel < 0 ? "" : items().at(size_t(sel));
    }
    std::string focused() { return tl_app_id(*focused_toplevel(server)); }
    [[nodiscard]] bool ring_shows() const
    {
        return server.overview.ring != nullptr && server.overview.ring->node.enabled;
    }
    [[nodiscard]] bool is_closed() const
    {
        return server.overview.tree == nullptr && !server.overview.active && !server.overview.closing;
    }
    std::map<std::string, window *> windows;
    made_up_keyboard *keyboard = nullptr;
    made_up_pointer *pointer = nullptr;
};

TEST_F(overview, opens_by_key_and_by_command_and_closes_by_command)
{
    map_windows({"b", "a"});
    keyboard->press(KEY_LEFTMETA);
    keyboard->tap(KEY_A);
    keyboard->release(KEY_LEFTMETA);
    EXPECT_THAT(items(), ElementsAre("a", "b"));
    command("overview");
    EXPECT_TRUE(is_closed());
    command("overview");
    EXPECT_TRUE(server.overview.active);
    command("overview");
    EXPECT_TRUE(is_closed());
}

TEST_F(overview, opens_only_where_the_settings_allow_it_and_always_closes)
{
    map_windows({"a"});
    config("overview = false\n");
    overview_toggle(server);
    EXPECT_TRUE(is_closed());
    config("overview = true\n");
    open();
    config("overview = false\n");
    overview_toggle(server);
    EXPECT_TRUE(is_closed());
}

TEST_F(overview, does_not_open_without_a_window_to_show)
{
    overview_toggle(server);
    EXPECT_TRUE(is_closed());
    map_windows({"a"});
    toplevel_minimize(record(*windows["a"]));
    overview_toggle(server);
    EXPECT_TRUE(is_closed());
}

TEST_F(overview, does_not_open_while_locked_and_ends_when_a_lock_begins)
{
    map_windows({"a"});
    open();
    session_lock_begin(server);
    EXPECT_TRUE(is_closed());
    overview_toggle(server);
    EXPECT_TRUE(is_closed());
    server.locked = false;
}

TEST_F(overview, lies_below_the_lock_screen_and_the_drag_icons_and_above_all_else)
{
    map_windows({"a"});
    open();
    std::vector<const wlr_scene_node *> order;
    for (const auto &node : each<&wlr_scene_node::link>(server.scene->tree.children))
        order.push_back(&node);
    const auto own = std::ranges::find(order, &server.overview.tree->node);
    EXPECT_THAT(std::vector(own, order.end()),
                ElementsAre(*own, &server.lock_tree->node, &server.drag_icon_tree->node));
    overview_exit(server);
}

TEST_F(overview, shows_one_window_in_its_own_size_in_the_middle)
{
    map_windows({"a"});
    open();
    ASSERT_THAT(items(), ElementsAre("a"));
    // Beside the strip of 240, above the title of 26, with margins of 48.
    EXPECT_EQ(item("a").rect, (wlr_box{240 + 420, 48 + 241, 200, 100}));
    EXPECT_EQ(item("a").start, box(*windows["a"]));
    overview_exit(server);
}

TEST_F(overview, lays_five_windows_out_in_rows_of_three_and_two)
{
    map_windows({"e", "d", "c", "b", "a"});
    open();
    EXPECT_THAT(items(), ElementsAre("a", "b", "c", "d", "e"));
    EXPECT_EQ(item("a").rect.y, item("c").rect.y);
    EXPECT_EQ(item("d").rect.y, item("e").rect.y);
    EXPECT_EQ(item("d").rect.x - item("a").rect.x, 161); // half of 298 + 24
    overview_exit(server);
}

TEST_F(overview, shows_only_visible_windows_of_the_outputs_workspace)
{
    map_windows({"minimized", "a"});
    toplevel_minimize(record(*windows["minimized"]));
    goto_workspace(server, 2);
    map_windows({"elsewhere"});
    goto_workspace(server, 1);
    settle();
    open();
    EXPECT_THAT(items(), ElementsAre("a"));
    overview_exit(server);
}

TEST_F(overview, shows_the_64_windows_that_were_raised_last)
{
    test::client &c = connect();
    for (int i = 0; i < 66; i++) {
        window &w = c.create_window("w" + std::to_string(i));
        w.preferred = {40, 30};
        w.open();
    }
    EVENTUALLY(wl_list_length(&server.toplevels) == 66);
    settle();
    open();
    EXPECT_THAT(items(), SizeIs(64));
    EXPECT_EQ(items().front(), "w65");
    EXPECT_EQ(items().back(), "w2");
    overview_exit(server);
}

TEST_F(overview, shows_client_drawn_shadows_neither_in_the_tile_nor_in_its_size)
{
    window &w = connect().create_window("shadowed");
    w.preferred = {300, 200};
    w.geometry(20, 30, 260, 140);
    map(w);
    settle();
    open();
    EXPECT_EQ(item("shadowed").rect.width, 260);
    EXPECT_EQ(item("shadowed").rect.height, 140);
    const wlr_fbox &source = item("shadowed").node->src_box;
    EXPECT_EQ(source.x, 20);
    EXPECT_EQ(source.y, 30);
    EXPECT_EQ(source.width, 260);
    EXPECT_EQ(source.height, 140);
    overview_exit(server);
}

TEST_F(overview, opens_with_its_strip_where_only_another_workspace_has_windows)
{
    map_windows({"a"});
    goto_workspace(server, 2);
    map_windows({"minimized"});
    toplevel_minimize(record(*windows["minimized"]));
    open();
    EXPECT_THAT(items(), IsEmpty());
    EXPECT_THAT(strip(), ElementsAre(1, 2, 3));
    click();
    EXPECT_TRUE(is_closed());
}

TEST_F(overview, strip_has_the_workspaces_with_windows_the_current_one_and_an_empty_one)
{
    goto_workspace(server, 5);
    map_windows({"five"});
    goto_workspace(server, 3);
    open();
    EXPECT_THAT(strip(), ElementsAre(1, 3, 5));
    overview_exit(server);
}

TEST_F(overview, strip_leaves_out_workspaces_of_other_outputs)
{
    map_windows({"a"});
    plug("B", 800, 600); // shows workspace 2
    open();
    EXPECT_THAT(strip(), ElementsAre(1, 3));
    EXPECT_EQ(server.overview.output, &output("A"));
    overview_exit(server);
}

TEST_F(overview, strip_makes_room_for_names)
{
    map_windows({"a"});
    open();
    EXPECT_EQ(server.overview.ws_items[1].box.y - server.overview.ws_items[0].box.y, 112 + 16);
    overview_exit(server);
    write_config("workspaces.conf", "1 = Mail\n");
    config_reload(server);
    open();
    EXPECT_EQ(server.overview.ws_items[1].box.y - server.overview.ws_items[0].box.y, 112 + 20 + 16);
    overview_exit(server);
}

TEST_F(overview, does_not_open_on_a_point_outside_the_outputs)
{
    map_windows({"a"});
    wlr_cursor_warp(server.cursor, nullptr, 5000, 5000);
    unplug("A");
    overview_toggle(server);
    EXPECT_TRUE(is_closed());
}

TEST_F(overview, selects_by_arrows_and_tab)
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

TEST_F(overview, tab_selects_the_first_tile_first)
{
    map_windows({"b", "a"});
    open();
    keyboard->tap(KEY_TAB);
    EXPECT_EQ(selected(), "a");
    keyboard->tap(KEY_ESC);
}

TEST_F(overview, picks_the_selected_window_by_enter_and_by_space)
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

TEST_F(overview, keeps_every_key_from_clients_and_bindings)
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
TEST_F(overview, tells_the_client_that_no_key_is_down_when_it_closes)
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

TEST_F(overview, picks_a_window_by_a_click)
{
    map_windows({"b", "a"});
    open();
    point_at_middle(item("b").rect);
    EXPECT_EQ(selected(), "b");
    click();
    EXPECT_TRUE(is_closed());
    EXPECT_EQ(focused(), "b");
}

TEST_F(overview, gives_the_focus_back_after_a_click_beside_the_tiles)
{
    map_windows({"b", "a"});
    open();
    click();
    EXPECT_TRUE(is_closed());
    EXPECT_EQ(focused(), "a");
}

TEST_F(overview, keeps_motion_and_buttons_from_clients)
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

TEST_F(overview, passes_on_the_release_of_a_button_that_was_pressed_before)
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

TEST_F(overview, closes_a_window_by_its_badge_and_follows)
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

TEST_F(overview, closes_itself_after_the_last_window)
{
    map_windows({"a"});
    open();
    windows["a"]->destroy();
    EVENTUALLY(is_closed());
}

TEST_F(overview, forgets_a_window_that_goes_while_it_is_pressed_or_dragged)
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

TEST_F(overview, changes_the_workspace_by_a_click_in_the_strip_and_stays)
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

TEST_F(overview, moves_a_window_by_dragging_it_to_the_strip)
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

TEST_F(overview, takes_a_tile_back_that_is_dropped_on_its_own_workspace_or_beside_the_strip)
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

TEST_F(overview, drags_a_tile_only_after_more_than_seven_pixels)
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

TEST_F(overview, counts_seven_pixels_as_a_click)
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

TEST_F(overview, gives_the_keyboard_to_a_window_that_can_be_seen)
{
    map_windows({"b", "a"});
    open();
    drag_to_workspace("a", 2); // it had the keyboard
    point_at(*pointer, 700, 690);
    click();
    EXPECT_TRUE(is_closed());
    EXPECT_TRUE(has_keyboard(*windows["b"]));
}

TEST_F(overview, ends_with_its_output)
{
    plug("B", 800, 600);
    map_windows({"a"});
    open();
    unplug("B");
    EXPECT_TRUE(server.overview.active);
    unplug("A");
    EXPECT_TRUE(is_closed());
}

TEST_F(overview, follows_the_usable_box_of_its_output)
{
    map_windows({"a"});
    open();
    output_state state;
    wlr_output_state_set_scale(&state, 2);
    wlr_output_send_request_state(output("A").wlr_output, &state);
    settle();
    EXPECT_TRUE(server.overview.active);
    EXPECT_EQ(item("a").rect.x + item("a").rect.width / 2, 240 + 400 / 2);
    overview_exit(server);
}

TEST_F(overview, ends_a_drag_that_is_under_way)
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

TEST_F(overview, frees_a_pointer_that_a_client_has_locked)
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

TEST_F(overview, gives_no_client_the_pointer)
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

TEST_F(overview, keeps_the_selection_where_the_desktop_changes_under_a_resting_pointer)
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

TEST_F(overview, picks_no_window_that_nobody_can_see_any_more)
{
    map_windows({"a"});
    open();
    keyboard->tap(KEY_TAB);
    command("workspace 2");
    keyboard->tap(KEY_ENTER);
    EXPECT_TRUE(is_closed());
    EXPECT_EQ(keyboard_focus(), nullptr);
}

TEST_F(overview, tiles_follow_their_clients_and_keep_no_replaced_buffer)
{
    map_windows({"a"});
    open();
    const wlr_box tile = item("a").rect;
    const uint32_t red = 0xffff0000, green = 0xff00ff00;
    for (const uint32_t color : {red, green}) {
        windows["a"]->fill(color);
        EVENTUALLY_EQ(pixel("A", tile.x + 20, tile.y + 60), color);
    }
    const wlr_surface *surface = tl_surface(record(*windows["a"]));
    const wlr_buffer *before = &surface->buffer->base;
    windows["a"]->fill(red);
    EVENTUALLY_EQ(pixel("A", tile.x + 20, tile.y + 60), red);
    EXPECT_NE(item("a").node->buffer, before);
    windows["a"]->unmap();
    EVENTUALLY(is_closed());
}

TEST_F(overview, keeps_nothing_of_a_window_that_goes_while_it_closes)
{
    config("force_effects = true\n");
    map_windows({"b", "a"});
    open();
    overview_exit(server);
    ASSERT_TRUE(server.overview.closing);
    windows["a"]->destroy_role();
    windows["a"]->commit(); // of the surface, which lives on
    settle();
    ASSERT_TRUE(server.overview.closing);
    EXPECT_THAT(items(), ElementsAre("b"));
}

TEST_F(overview, without_animations_appears_in_place_and_goes_at_once)
{
    config("force_effects = true\nanimations = false\n");
    map_windows({"a"});
    open();
    EXPECT_EQ(item("a").node->opacity, 1);
    EXPECT_EQ(item("a").node->node.x, item("a").rect.x);
    overview_exit(server);
    EXPECT_TRUE(is_closed());
}

TEST_F(overview, creates_no_effect_without_effects)
{
    map_windows({"a"});
    open();
    for (const auto &node : each<&wlr_scene_node::link>(server.overview.tree->children)) {
        EXPECT_NE(node.type, WLR_SCENE_NODE_SHADOW);
        EXPECT_NE(node.type, WLR_SCENE_NODE_BLUR);
    }
    overview_exit(server);
}

// With effects, at exact times

struct zooming_overview : overview {
    void SetUp() override
    {
        overview::SetUp();
        config("force_effects = true\n");
        run_clock(std::chrono::seconds{1}); // past what the start has armed
    }
    // Maps windows, which also fade in, and waits for the end of that.
    void map_faded(const std::vector<std::string> &names)
    {
        map_windows(names);
        run_clock(std::chrono::milliseconds{200});
        settle();
    }
    void expect_no_timer() { EXPECT_FALSE(world.advance_clock_ms(10'000)) << "a timer is still armed"; }
    wlr_box shown(const std::string &name)
    {
        const wlr_scene_buffer &picture = *item(name).node;
        return {picture.node.x, picture.node.y, picture.dst_width, picture.dst_height};
    }
    // Returns the opacities of all pictures: tiles, titles, badges and thumbnails.
    std::set<float> opacities()
    {
        std::set<float> all;
        for (auto &node : each<&wlr_scene_node::link>(server.overview.tree->children))
            if (node.type == WLR_SCENE_NODE_BUFFER)
                all.insert(wlr_scene_buffer_from_node(&node)->opacity);
        return all;
    }
};

TEST_F(zooming_overview, opens_from_the_windows_and_then_nothing_ticks)
{
    map_faded({"a"});
    place(*windows["a"], 0, 30);
    open();
    EXPECT_EQ(shown("a"), (wlr_box{0, 30, 200, 100}));
    EXPECT_THAT(opacities(), ElementsAre(0));
    advance_clock_ms(75);
    EXPECT_EQ(shown("a"), (wlr_box{577, 256, 200, 100})); // 7/8 of the way to 660, 289
    EXPECT_THAT(opacities(), ElementsAre(0.75F));
    advance_clock_ms(74);
    EXPECT_NE(server.overview.anim_t0, 0);
    advance_clock_ms(1);
    advance_clock_ms(16);
    EXPECT_EQ(shown("a"), item("a").rect);
    EXPECT_THAT(opacities(), ElementsAre(1));
    expect_no_timer();
    overview_end(server);
}

TEST_F(zooming_overview, closes_to_the_windows_and_takes_no_input_meanwhile)
{
    map_faded({"a"});
    place(*windows["a"], 0, 30);
    open();
    run_clock(std::chrono::milliseconds{200});
    keyboard->tap(KEY_TAB);
    EXPECT_TRUE(ring_shows());
    overview_exit(server);
    EXPECT_FALSE(server.overview.active);
    EXPECT_TRUE(server.overview.closing);
    EXPECT_FALSE(ring_shows());
    advance_clock_ms(75);
    EXPECT_EQ(shown("a"), (wlr_box{577, 256, 200, 100})); // an eighth of the way
    EXPECT_THAT(opacities(), ElementsAre(0.25F));
    point_at(*pointer, 50, 60);
    settle();
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(*windows["a"])));
    advance_clock_ms(75);
    run_clock(std::chrono::milliseconds{20});
    EXPECT_TRUE(is_closed());
    expect_no_timer();
}

TEST_F(zooming_overview, that_closes_gives_way_to_one_that_opens)
{
    map_faded({"a"});
    open();
    run_clock(std::chrono::milliseconds{200});
    overview_exit(server);
    advance_clock_ms(50);
    open();
    EXPECT_FALSE(server.overview.closing);
    EXPECT_THAT(opacities(), ElementsAre(0));
    run_clock(std::chrono::milliseconds{200});
    EXPECT_TRUE(server.overview.active);
    EXPECT_THAT(opacities(), ElementsAre(1));
    overview_end(server);
}

TEST_F(zooming_overview, closes_from_the_middle_of_its_opening)
{
    map_faded({"a"});
    open();
    advance_clock_ms(50);
    overview_exit(server);
    run_clock(std::chrono::milliseconds{200});
    EXPECT_TRUE(is_closed());
}

TEST_F(zooming_overview, without_tiles_goes_at_once)
{
    map_faded({"a"});
    goto_workspace(server, 2);
    open();
    EXPECT_THAT(items(), IsEmpty());
    overview_exit(server);
    EXPECT_TRUE(is_closed());
}

TEST_F(zooming_overview, forgets_windows_that_go_meanwhile)
{
    map_faded({"c", "b", "a"});
    open();
    advance_clock_ms(50);
    windows["b"]->destroy(); // the layout closes up without animation
    EVENTUALLY_EQ(items(), (std::vector<std::string>{"a", "c"}));
    EXPECT_THAT(opacities(), ElementsAre(1));
    EXPECT_EQ(shown("c"), item("c").rect);
    overview_exit(server);
    advance_clock_ms(50);
    windows["a"]->destroy();
    EVENTUALLY_EQ(items(), std::vector<std::string>{"c"});
    disconnect(windows["c"]->owner());
    EVENTUALLY(items().empty());
    run_clock(std::chrono::milliseconds{200});
    EXPECT_TRUE(is_closed());
}

// It is no window any more then, although its surface is not unmapped.
TEST_F(zooming_overview, forgets_an_x11_window_that_leaves_the_manager_while_it_closes)
{
    active_windows = test::activity::may_lag;
    test::x11_window &w = map_x11({.title = "x"});
    map_faded({"a"});
    open();
    run_clock(std::chrono::milliseconds{200});
    EXPECT_THAT(server.overview.items, SizeIs(2));
    overview_exit(server);
    w.override_redirect(true);
    w.move(20, 30);
    EVENTUALLY(find_unmanaged(w) != nullptr);
    EXPECT_THAT(items(), ElementsAre("a"));
    settle();
    run_clock(std::chrono::milliseconds{200});
    EXPECT_TRUE(is_closed());
}

TEST_F(zooming_overview, ends_its_zoom_where_a_drag_begins)
{
    map_faded({"b", "a"});
    open();
    advance_clock_ms(50);
    point_at_middle(item("b").rect);
    pointer->press(BTN_LEFT);
    point_at(*pointer, 700, 650);
    EXPECT_EQ(shown("a"), item("a").rect);
    run_clock(std::chrono::milliseconds{200});
    EXPECT_EQ(shown("b").width, 84);
    EXPECT_EQ(item("b").node->opacity, 0.9F);
    pointer->release(BTN_LEFT);
    EXPECT_EQ(shown("b"), item("b").rect);
    overview_end(server);
}

TEST_F(zooming_overview, ends_at_once_with_a_lock_and_with_its_output)
{
    map_faded({"a"});
    plug("B", 800, 600);
    for (const bool closes : {false, true}) {
        open();
        advance_clock_ms(50);
        if (closes)
            overview_exit(server);
        session_lock_begin(server);
        EXPECT_TRUE(is_closed());
        server.locked = false;
    }
    open();
    overview_exit(server);
    unplug("A");
    EXPECT_TRUE(is_closed());
}

TEST_F(zooming_overview, does_not_let_workspaces_slide)
{
    map_faded({"a"});
    open();
    point_at_workspace(2);
    click();
    EXPECT_EQ(output("A").current_ws->num, 2);
    EXPECT_EQ(server.sliding.from, nullptr);
    overview_end(server);
}

// What it looks like

struct painted_overview : zooming_overview {
    // Opens it with windows of different colours and sizes, and waits for the tiles.
    void show(int count)
    {
        static constexpr std::array<uint32_t, 6> colors{0xff336699, 0xff993366, 0xff669933,
                                                        0xff996633, 0xff339966, 0xff663399};
        for (int i = 0; i < count; i++) {
            window &w = map("window " + std::to_string(i + 1), {200 + 40 * (i % 5), 300 - 30 * (i % 4)});
            w.title(i == 1 ? "A page with a long title that has no room in its cell"
                           : "Title " + std::to_string(i));
            w.fill(colors[size_t(i) % colors.size()]);
            place(w, 30 * i, 60 + 10 * i);
        }
        settle();
        run_clock(std::chrono::milliseconds{200});
        open();
        run_clock(std::chrono::milliseconds{200});
        keyboard->tap(KEY_TAB);
        settle();
    }
};

TEST_F(painted_overview, looks_like_this_with_one_window)
{
    show(1);
    EXPECT_TRUE(test::matches_golden(picture("A"), "overview_1", 8));
    overview_end(server);
}

TEST_F(painted_overview, looks_like_this_with_five_windows_on_named_workspaces)
{
    write_config("workspaces.conf", "1 = Mail\n2 = Web\n4 = A name that is too long for a thumbnail\n");
    config_reload(server);
    window &w = map("elsewhere", {640, 400});
    carry_to_workspace(record(w), workspace(4));
    show(5);
    EXPECT_TRUE(test::matches_golden(picture("A"), "overview_5", 8));
    overview_end(server);
}

TEST_F(painted_overview, looks_like_this_with_twelve_windows)
{
    show(12);
    EXPECT_TRUE(test::matches_golden(picture("A"), "overview_12", 8));
    overview_end(server);
}

TEST_F(painted_overview, blurs_what_lies_behind)
{
    config("force_effects = true\nblur = true\n");
    window &edge = map("edge", {640, 704});
    edge.fill(0xffffffff);
    place(edge, 0, 0);
    settle();
    run_clock(std::chrono::milliseconds{200});
    struct row {
        int widest_step, inside, outside; // brightness
    };
    const auto look = [&] {
        settle();
        const test::image now = picture("A");
        const auto brightness = [&](int x) { return int(now.at(x, 20) & 0xff); };
        row r{.widest_step = 0, .inside = brightness(500), .outside = brightness(800)};
        for (int x = 560; x < 720; x++)
            r.widest_step = std::max(r.widest_step, std::abs(brightness(x + 1) - brightness(x)));
        return r;
    };
    const row sharp = look();
    open();
    run_clock(std::chrono::milliseconds{200});
    const row blurred = look();
    EXPECT_GT(sharp.widest_step, 150);
    EXPECT_LT(blurred.widest_step, 20);
    EXPECT_GT(blurred.inside, blurred.outside + 40); // the edge is still there
    overview_end(server);
}

TEST_F(painted_overview, has_the_pixels_of_its_output)
{
    output_state state;
    wlr_output_state_set_scale(&state, 1.5);
    wlr_output_send_request_state(output("A").wlr_output, &state);
    show(1);
    const wlr_scene_buffer *badge = nullptr;
    for (auto &node : each<&wlr_scene_node::link>(server.overview.tree->children))
        if (node.x == item("window 1").close_rect.x && node.type == WLR_SCENE_NODE_BUFFER)
            badge = wlr_scene_buffer_from_node(&node);
    ASSERT_NE(badge, nullptr);
    EXPECT_EQ(badge->dst_width, 22);
    EXPECT_EQ(badge->WLR_PRIVATE.buffer_width, 33);
    overview_end(server);
}

TEST_F(painted_overview, is_on_the_output_under_the_pointer_only)
{
    plug("B", 800, 600);
    settle();
    const uint32_t before = pixel("B", 400, 300);
    show(1);
    EXPECT_EQ(pixel("B", 400, 300), before);
    overview_end(server);
    point_at(*pointer, 1280 + 400, 300);
    settle();
    open();
    EXPECT_EQ(server.overview.output, &output("B"));
    for (const overview_workspace &ws : server.overview.ws_items)
        EXPECT_GE(ws.box.x, 1280);
    overview_end(server);
}

} // namespace
