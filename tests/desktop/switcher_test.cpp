// The window switcher, by the keys that open, step and close it.

#include "support/desktop.hpp"
#include "support/wayland_devices.hpp"

#include "input/switcher.hpp"
#include "input/switcher_boxes.hpp"
#include "session/lock.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"

#include <linux/input-event-codes.h>
#include <set>

using test::made_up_keyboard;
using test::seat;
using test::window;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

struct switcher : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        wlr_cursor_warp(server.cursor, nullptr, 20, 20);
        keyboard = &plug_keyboard();
    }
    // The last one is raised last.
    void map_windows(const std::vector<std::string> &names)
    {
        for (const std::string &name : names)
            windows[name] = &map(name, {200, 100});
        settle();
    }
    std::vector<std::string> items()
    {
        std::vector<std::string> names;
        names.reserve(server.switching.sw_items.size());
        for (const vantore_toplevel *t : server.switching.sw_items)
            names.emplace_back(tl_app_id(*t));
        return names;
    }
    std::string selected() { return items().at(size_t(server.switching.sw_index)); }
    std::string focused() { return tl_app_id(*focused_toplevel(server)); }
    [[nodiscard]] bool frame_shows() const
    {
        const wlr_scene_rect *top = server.switching.sw_frame[0];
        return top != nullptr && top->node.enabled;
    }
    [[nodiscard]] bool list_shows() const
    {
        const wlr_scene_buffer *list = server.switching.sw_overlay.node;
        return list != nullptr && list->node.enabled;
    }
    // A program's keyboard tells its modifiers without key events.
    void open_by_typing(test::virtual_keyboard &typist, const seat &ears)
    {
        typist.keymap(ears.keymap());
        typist.modifiers(WLR_MODIFIER_ALT);
        typist.key(KEY_TAB, true);
        typist.key(KEY_TAB, false);
        EVENTUALLY(server.switching.sw_active);
        settle();
        EXPECT_EQ(selected(), "b");
    }
    std::map<std::string, window *> windows;
    made_up_keyboard *keyboard = nullptr;
};

TEST_F(switcher, steps_with_each_press_and_focuses_when_the_modifier_is_released)
{
    map_windows({"c", "b", "a"});
    keyboard->press(KEY_LEFTALT);
    keyboard->tap(KEY_TAB);
    EXPECT_THAT(items(), ElementsAre("a", "b", "c"));
    EXPECT_EQ(selected(), "b");
    keyboard->tap(KEY_TAB);
    EXPECT_EQ(selected(), "c");
    keyboard->tap(KEY_TAB);
    EXPECT_EQ(selected(), "a");
    keyboard->tap(KEY_TAB);
    EXPECT_EQ(focused(), "a"); // nothing has the focus before the release
    keyboard->release(KEY_LEFTALT);
    EXPECT_EQ(focused(), "b");
    EXPECT_FALSE(server.switching.sw_active);
    EXPECT_FALSE(frame_shows());
    EXPECT_EQ(server.switching.sw_tree, nullptr);
}

TEST_F(switcher, goes_backwards_with_shift)
{
    map_windows({"c", "b", "a"});
    keyboard->press(KEY_LEFTALT);
    keyboard->press(KEY_LEFTSHIFT);
    keyboard->tap(KEY_TAB);
    EXPECT_EQ(selected(), "c");
    keyboard->tap(KEY_TAB);
    EXPECT_EQ(selected(), "b");
    keyboard->release(KEY_LEFTSHIFT); // does not end it
    EXPECT_TRUE(server.switching.sw_active);
    keyboard->release(KEY_LEFTALT);
    EXPECT_EQ(focused(), "b");
}

TEST_F(switcher, keeps_the_release_that_ends_it_from_the_client)
{
    map_windows({"b", "a"});
    seat ears{windows["a"]->owner()}, other_ears{windows["b"]->owner()};
    settle();
    keyboard->press(KEY_LEFTALT);
    keyboard->tap(KEY_TAB);
    keyboard->release(KEY_LEFTALT);
    settle();
    for (seat *each_seat : {&ears, &other_ears})
        for (const std::string &event : each_seat->take())
            EXPECT_THAT(event, testing::Not("key up 56"));
}

TEST_F(switcher, is_cancelled_by_escape_whose_release_the_client_hears)
{
    map_windows({"b", "a"});
    seat ears{windows["a"]->owner()};
    settle();
    keyboard->press(KEY_LEFTALT);
    keyboard->tap(KEY_TAB);
    (void)ears.take();
    keyboard->press(KEY_ESC);
    EXPECT_FALSE(server.switching.sw_active);
    keyboard->release(KEY_ESC);
    keyboard->release(KEY_LEFTALT);
    EXPECT_EQ(focused(), "a");
    settle();
    EXPECT_THAT(ears.take(), testing::Contains("key up 1"));
}

TEST_F(switcher, does_not_open_for_one_window)
{
    keyboard->press(KEY_LEFTALT);
    keyboard->tap(KEY_TAB);
    EXPECT_FALSE(server.switching.sw_active);
    map_windows({"a"});
    keyboard->tap(KEY_TAB);
    EXPECT_FALSE(server.switching.sw_active);
    EXPECT_FALSE(frame_shows());
    EXPECT_EQ(server.switching.sw_tree, nullptr);
}

TEST_F(switcher, shows_cards_of_the_current_workspace_only)
{
    plug("B", 800, 600);
    map_windows({"b", "a"});
    wlr_cursor_warp(server.cursor, nullptr, 1500, 20);
    map_windows({"there"});
    keyboard->press(KEY_LEFTALT);
    keyboard->tap(KEY_TAB);
    EXPECT_FALSE(server.switching.sw_active); // one window there, two elsewhere
    wlr_cursor_warp(server.cursor, nullptr, 20, 20);
    keyboard->tap(KEY_TAB);
    EXPECT_THAT(items(), ElementsAre("a", "b"));
    EXPECT_NE(server.switching.sw_tree, nullptr);
    EXPECT_FALSE(list_shows());
}

TEST_F(switcher, lists_the_windows_of_all_workspaces_on_show_with_another_modifier)
{
    plug("B", 800, 600);
    map_windows({"b", "a"});
    wlr_cursor_warp(server.cursor, nullptr, 1500, 20);
    map_windows({"there"});
    command("workspace 5");
    map_windows({"hidden"});
    command("workspace 2");
    keyboard->press(KEY_LEFTMETA);
    keyboard->tap(KEY_TAB);
    EXPECT_THAT(items(), ElementsAre("there", "a", "b"));
    EXPECT_TRUE(list_shows());
    EXPECT_EQ(server.switching.sw_tree, nullptr);
    keyboard->release(KEY_LEFTMETA);
    EXPECT_FALSE(list_shows());
    EXPECT_EQ(focused(), "a");
}

TEST_F(switcher, lists_with_alt_and_logo)
{
    map_windows({"b", "a"});
    switcher_step(server, WLR_MODIFIER_ALT | WLR_MODIFIER_LOGO);
    EXPECT_TRUE(list_shows());
    EXPECT_EQ(server.switching.sw_tree, nullptr);
    switcher_cancel(server);
    EXPECT_EQ(focused(), "a");
}

TEST_F(switcher, brings_a_minimized_window_back_and_puts_no_frame_around_it)
{
    map_windows({"b", "a"});
    toplevel_minimize(record(*windows["b"]));
    settle();
    keyboard->press(KEY_LEFTALT);
    keyboard->tap(KEY_TAB);
    EXPECT_EQ(selected(), "b");
    EXPECT_FALSE(frame_shows());
    keyboard->tap(KEY_TAB);
    EXPECT_TRUE(frame_shows());
    keyboard->tap(KEY_TAB);
    EXPECT_FALSE(frame_shows());
    keyboard->release(KEY_LEFTALT);
    EXPECT_FALSE(record(*windows["b"]).minimized);
    EXPECT_EQ(focused(), "b");
}

TEST_F(switcher, frames_the_selected_window_with_its_bar)
{
    map_windows({"b", "a"});
    record(*windows["b"]).ssd = true;
    place(*windows["b"], 300, 200);
    keyboard->press(KEY_LEFTALT);
    keyboard->tap(KEY_TAB);
    const auto &frame = server.switching.sw_frame;
    EXPECT_EQ(frame[0]->node.x, 297);
    EXPECT_EQ(frame[0]->node.y, 167);
    EXPECT_EQ(frame[0]->width, 206);
    EXPECT_EQ(frame[3]->node.x, 500);
    EXPECT_EQ(frame[3]->height, 130);
}

TEST_F(switcher, is_cancelled_when_any_window_closes)
{
    map_windows({"c", "b", "a"});
    for (const char *name : {"c", "b"}) {
        switcher_step(server, WLR_MODIFIER_LOGO);
        ASSERT_EQ(selected(), "b");
        windows[name]->destroy();
        EVENTUALLY(!server.switching.sw_active);
        EXPECT_THAT(items(), IsEmpty());
        EXPECT_EQ(focused(), "a");
    }
}

TEST_F(switcher, ends_with_a_lock_and_with_an_output)
{
    plug("B", 800, 600);
    map_windows({"b", "a"});
    switcher_step(server, WLR_MODIFIER_ALT);
    unplug("B");
    EXPECT_FALSE(server.switching.sw_active);
    switcher_step(server, WLR_MODIFIER_ALT);
    session_lock_begin(server);
    EXPECT_FALSE(server.switching.sw_active);
    EXPECT_EQ(server.switching.sw_tree, nullptr);
    server.locked = false;
}

TEST_F(switcher, ends_when_its_keyboard_is_unplugged)
{
    map_windows({"b", "a"});
    keyboard->press(KEY_LEFTALT);
    keyboard->tap(KEY_TAB);
    unplug_device(*keyboard);
    EXPECT_FALSE(server.switching.sw_active);
    EXPECT_EQ(focused(), "b");
}

TEST_F(switcher, ends_when_a_program_that_types_lets_the_modifier_go)
{
    map_windows({"b", "a"});
    seat ears{windows["a"]->owner()};
    settle();
    test::virtual_keyboard typist{ears};
    open_by_typing(typist, ears);
    typist.modifiers(0);
    EVENTUALLY(!server.switching.sw_active);
    EXPECT_EQ(focused(), "b");
}

TEST_F(switcher, ends_when_a_program_that_types_goes)
{
    map_windows({"b", "a"});
    seat ears{windows["a"]->owner()};
    settle();
    {
        test::virtual_keyboard typist{ears};
        open_by_typing(typist, ears);
    }
    EVENTUALLY(!server.switching.sw_active);
    EXPECT_EQ(focused(), "b");
}

TEST_F(switcher, is_cancelled_when_an_x11_window_closes)
{
    map_windows({"b", "a"});
    test::x11_window &x = map_x11();
    switcher_step(server, WLR_MODIFIER_LOGO);
    switcher_step(server, WLR_MODIFIER_LOGO);
    ASSERT_THAT(items(), ElementsAre("xapp", "a", "b"));
    ASSERT_EQ(selected(), "b");
    x.destroy();
    EVENTUALLY(!server.switching.sw_active);
    EXPECT_THAT(items(), IsEmpty());
    EXPECT_EQ(focused(), "a");
}

TEST_F(switcher, gives_the_keyboard_to_no_window_whose_workspace_has_gone_out_of_sight)
{
    map_windows({"b", "a"});
    keyboard->press(KEY_LEFTMETA);
    keyboard->tap(KEY_TAB);
    ASSERT_EQ(selected(), "b");
    keyboard->tap(KEY_3);
    ASSERT_EQ(output("A").current_ws, &workspace(3));
    keyboard->release(KEY_LEFTMETA);
    EXPECT_FALSE(server.switching.sw_active);
    EXPECT_FALSE(list_shows());
    EXPECT_EQ(keyboard_focus(), nullptr);
    EXPECT_EQ(focused(), "a");
}

TEST_F(switcher, pictures_follow_their_clients_and_keep_no_replaced_buffer)
{
    map_windows({"b", "a"});
    keyboard->press(KEY_LEFTALT);
    keyboard->tap(KEY_TAB);
    const uint32_t red = 0xffff0000;
    windows["b"]->fill(red);
    const wlr_box panel{(1280 - 490) / 2, (704 - 194) / 2, 490, 194};
    EVENTUALLY_EQ(pixel("A", panel.x + 24 + 234 + 104, panel.y + 48 + 62), red);
    const wlr_surface *surface = tl_surface(record(*windows["b"]));
    const wlr_buffer *before = &surface->buffer->base;
    windows["b"]->fill(0xff00ff00);
    EVENTUALLY_EQ(pixel("A", panel.x + 24 + 234 + 104, panel.y + 48 + 62), 0xff00ff00U);
    std::vector<const wlr_buffer *> held;
    for (auto &node : each<&wlr_scene_node::link>(server.switching.sw_tree->children))
        if (node.type == WLR_SCENE_NODE_BUFFER)
            held.push_back(wlr_scene_buffer_from_node(&node)->buffer);
    EXPECT_THAT(held, testing::Not(testing::Contains(before)));
    windows["b"]->unmap();
    EVENTUALLY(!server.switching.sw_active);
}

TEST_F(switcher, lets_the_pointer_through)
{
    map_windows({"b", "a"});
    place(*windows["a"], 540, 300);
    wlr_cursor_warp(server.cursor, nullptr, 640, 352);
    switcher_step(server, WLR_MODIFIER_LOGO);
    settle();
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(*windows["a"])));
    switcher_cancel(server);
}

TEST_F(switcher, shows_very_long_titles_and_any_bytes)
{
    map_windows({"b", "a"});
    windows["a"]->title(std::string(3000, 'w'));
    windows["b"]->title("\xff\xfe");
    settle();
    for (const uint32_t modifier : {WLR_MODIFIER_ALT, WLR_MODIFIER_LOGO}) {
        switcher_step(server, modifier);
        settle();
        switcher_cancel(server);
    }
}

// Narrow letters are a tenth wider at this scale than at 1.
TEST_F(switcher, keeps_names_on_their_cards_at_a_fractional_scale)
{
    output_state state;
    wlr_output_state_set_scale(&state, 1.5F);
    wlr_output_send_request_state(output("A").wlr_output, &state);
    map_windows({"b", "a"});
    place(*windows["a"], 0, 0);
    place(*windows["b"], 600, 0);
    windows["a"]->title(std::string(200, 'l'));
    settle();
    switcher_step(server, WLR_MODIFIER_ALT);
    settle();
    const switcher_cards cards = switcher_cards_in(usable_at_cursor(server), 2);
    const wlr_box card = switcher_card(cards, 0);
    const double right = cards.panel.x + card.x + card.width, top = cards.panel.y + card.y;
    const test::image shown = picture("A");
    std::set<uint32_t> between_cards;
    for (int y = 0; y < 30; y++)
        for (int x = 2; x < cards.gap - 2; x++)
            between_cards.insert(shown.at(int((right + x) * 1.5), int((top + y) * 1.5)));
    EXPECT_EQ(between_cards.size(), 1U);
    switcher_cancel(server);
}

TEST_F(switcher, looks_like_this)
{
    map_windows({"editor", "browser", "terminal"});
    windows["editor"]->fill(0xff336699);
    windows["browser"]->fill(0xff993366);
    windows["terminal"]->fill(0xff669933);
    windows["browser"]->title("A page with quite a long title that does not fit on its card");
    place(*windows["editor"], 40, 40);
    place(*windows["browser"], 1000, 40);
    place(*windows["terminal"], 40, 560);
    toplevel_minimize(record(*windows["editor"]));
    settle();
    switcher_step(server, WLR_MODIFIER_ALT);
    settle();
    EXPECT_TRUE(test::matches_golden(picture("A"), "switcher_cards", 8));
    switcher_cancel(server);
    switcher_step(server, WLR_MODIFIER_LOGO);
    settle();
    EXPECT_TRUE(test::matches_golden(picture("A"), "switcher_list", 8));
    switcher_cancel(server);
}

} // namespace
