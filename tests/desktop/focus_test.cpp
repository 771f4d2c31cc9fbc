// Which window has the keyboard, which one wants it, and in which order windows were raised.

#include "support/desktop.hpp"
#include "support/wayland_devices.hpp"
#include "support/wayland_popup.hpp"

#include "windows/fullscreen.hpp"
#include "workspaces/focus.hpp"

using test::activation;
using test::window;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

struct focus : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        low = &map("low");
        high = &map("high");
        settle();
        (void)heard();
    }
    void ask_attention(window &w, wl_surface *surface)
    {
        activation token{w.owner()};
        ASSERT_TRUE(until([&] { return token.has_token(); }));
        token.activate(surface);
        settle();
    }
    // Returns the app ids of the first workspace's windows, the lowest first.
    std::vector<std::string> from_below()
    {
        std::vector<std::string> names;
        for (const auto &node : each<&wlr_scene_node::link>(workspace(1).tree->children))
            if (const vantore_toplevel *t = toplevel_of(node))
                names.emplace_back(tl_app_id(*t));
        return names;
    }
    window *low = nullptr, *high = nullptr;
};

TEST_F(focus, of_the_window_that_has_it_raises_and_tells_nobody)
{
    focus_toplevel_ex(&record(*low), false);
    EXPECT_EQ(focused_toplevel(server), &record(*high)); // the keyboard moved, the order did not
    settle();
    (void)heard();
    focus_toplevel_ex(&record(*low), true);
    EXPECT_EQ(focused_toplevel(server), &record(*low));
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(focus, is_not_given_to_a_window_that_asks_for_it)
{
    ask_attention(*low, low->get());
    EXPECT_TRUE(record(*low).urgent);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WINDOWS));
    EXPECT_FALSE(low->has(test::ACTIVATED));
    ask_attention(*low, low->get()); // it has asked already
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(focus, ends_a_windows_wish_for_it)
{
    ask_attention(*low, low->get());
    (void)heard();
    focus_toplevel_ex(&record(*low), true);
    EXPECT_FALSE(record(*low).urgent);
    EXPECT_THAT(heard(), ElementsAre(VNT_EVT_WINDOWS, VNT_EVT_WINDOWS)); // the wish, then the focus
}

TEST_F(focus, makes_its_windows_own_wish_pointless)
{
    ask_attention(*high, high->get());
    EXPECT_FALSE(record(*high).urgent);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(focus, wished_for_by_a_surface_that_is_no_window_means_nothing)
{
    test::client &c = low->owner();
    wl_surface *plain = c.create_surface("plain");
    ask_attention(*low, plain);
    EXPECT_FALSE(record(*low).urgent);
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_EQ(c.error(), 0);
    c.destroy_surface(plain);
}

TEST_F(focus, wished_for_before_the_first_map_is_remembered)
{
    window &late = low->owner().create_window("late");
    late.title("late"); // creates the toplevel
    ask_attention(late, late.get());
    EXPECT_EQ(low->owner().error(), 0);
    map(late);
    EXPECT_FALSE(record(late).urgent); // a new window gets the focus anyway
}

TEST_F(focus, raises_the_dialogs_of_a_window_with_it_in_their_order)
{
    window &first = map_dialog(*low, "first"), &nested = map_dialog(first, "nested");
    map_dialog(*low, "second");
    focus_toplevel_ex(&record(*high), true);
    EXPECT_THAT(from_below(), ElementsAre("low", "first", "nested", "second", "high"));
    focus_toplevel_ex(&record(*low), true);
    EXPECT_THAT(from_below(), ElementsAre("high", "low", "first", "nested", "second"));
    EXPECT_EQ(focused_toplevel(server), &record(*low));
    EXPECT_TRUE(has_keyboard(*low));
    focus_toplevel_ex(&record(first), true);
    EXPECT_THAT(from_below(), ElementsAre("high", "low", "second", "first", "nested"));
    focus_toplevel_ex(&record(nested), true);
    EXPECT_THAT(from_below(), ElementsAre("high", "low", "second", "first", "nested"));
}

TEST_F(focus, leaves_dialogs_above_a_window_that_comes_back_to_their_tree)
{
    map_dialog(*low);
    toplevel_set_fullscreen(record(*low), true);
    focus_toplevel_ex(&record(*low), true);
    EXPECT_THAT(from_below(), ElementsAre("high"));
    focus_toplevel_ex(&record(*high), false); // demotes the other
    EXPECT_THAT(from_below(), ElementsAre("high", "low", "dialog"));
    settle();
}

TEST_F(focus, is_out_of_reach_during_a_lock)
{
    record(*low).urgent = record(*low).minimized = true;
    server.locked = true;
    focus_toplevel_ex(&record(*low), true);
    EXPECT_TRUE(record(*low).urgent);
    EXPECT_TRUE(record(*low).minimized);
    EXPECT_EQ(focused_toplevel(server), &record(*high));
    EXPECT_THAT(heard(), IsEmpty());
    server.locked = false;
    focus_toplevel_ex(&record(*low), true);
    EXPECT_FALSE(record(*low).minimized);
}

TEST_F(focus, of_nothing_does_nothing)
{
    focus_toplevel_ex(nullptr, true);
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(focus, goes_to_the_topmost_visible_window_without_raising_it)
{
    wlr_scene_node_set_enabled(&record(*high).scene_tree->node, false);
    focus_top_toplevel(server);
    EVENTUALLY(low->has(test::ACTIVATED));
    EXPECT_EQ(focused_toplevel(server), &record(*high));
    wlr_scene_node_set_enabled(&record(*low).scene_tree->node, false);
    focus_top_toplevel(server); // no window is visible, so the focus stays
    EXPECT_EQ(keyboard_focus(), tl_surface(record(*low)));
    for (window *w : {low, high})
        wlr_scene_node_set_enabled(&record(*w).scene_tree->node, true);
}

} // namespace
