// Focus that follows the mouse.

#include "support/drags.hpp"
#include "support/wayland_constraints.hpp"
#include "support/wayland_popup.hpp"

#include "input/pointer.hpp"
#include "workspaces/focus.hpp"

using test::drags;
using test::window;

namespace
{

struct hover_focus : drags {
    void SetUp() override
    {
        drags::SetUp();
        g_focus_follows_mouse = true;
        other = &map("other", {300, 200});
        place(*other, 800, 300);
        go(400, 350); // the first window, which is the lower one in the list
        EVENTUALLY(w->has(test::ACTIVATED));
    }
    window *other = nullptr;
};

TEST_F(hover_focus, does_not_raise_and_commands_act_on_the_window_raised_last)
{
    EXPECT_EQ(focused_toplevel(server), &record(*other));
    EXPECT_EQ(keyboard_focus(), tl_surface(t()));
    keyboard->press(KEY_LEFTMETA);
    keyboard->tap(KEY_Q);
    keyboard->release(KEY_LEFTMETA);
    EVENTUALLY_EQ(other->closes(), 1);
    EXPECT_EQ(w->closes(), 0);
}

TEST_F(hover_focus, leaves_a_window_that_opens_under_a_resting_pointer_until_it_has_moved_eight_pixels)
{
    window &late = map("late", {200, 200});
    place(late, 350, 300);
    focus_toplevel_ex(&record(*other), true);
    process_cursor_motion(server, 0);
    const wlr_surface *others = tl_surface(record(*other));
    EXPECT_EQ(keyboard_focus(), others);
    pointer->move(7, 0);
    EXPECT_EQ(keyboard_focus(), others);
    pointer->move(1, 0);
    EXPECT_EQ(keyboard_focus(), tl_surface(record(late)));
}

TEST_F(hover_focus, keeps_its_anchor_over_the_empty_desktop)
{
    const double anchor = server.pointing.ffm_anchor_x;
    go(100, 600);
    EXPECT_EQ(server.pointing.ffm_anchor_x, anchor);
    EXPECT_EQ(keyboard_focus(), tl_surface(t()));
}

TEST_F(hover_focus, brings_its_anchor_along_over_the_focused_window)
{
    go(560, 350);
    pointer->move(5, 0);
    place(*other, 568, 300);
    pointer->move(7, 0);
    EXPECT_EQ(keyboard_focus(), tl_surface(t()));
    pointer->move(1, 0);
    EXPECT_EQ(keyboard_focus(), tl_surface(record(*other)));
}

TEST_F(hover_focus, leaves_a_window_alone_that_has_asked_for_the_pointer)
{
    const wlr_surface *others = tl_surface(record(*other));
    focus_toplevel_ex(&record(*other), true);
    test::seat ears{w->owner()};
    settle();
    {
        const test::locked_pointer wish{ears, w->get()};
        settle();
        EXPECT_FALSE(wish.active());
        pointer->move(100, 0);
        EXPECT_EQ(keyboard_focus(), others);
    }
    settle();
    pointer->move(7, 0); // the anchor has followed the pointer
    EXPECT_EQ(keyboard_focus(), others);
    pointer->move(1, 0);
    EXPECT_EQ(keyboard_focus(), tl_surface(t()));
}

TEST_F(hover_focus, takes_a_window_where_nothing_has_the_keyboard)
{
    focus_clear(server);
    pointer->move(8, 0);
    EXPECT_EQ(keyboard_focus(), tl_surface(t()));
}

TEST_F(hover_focus, waits_with_its_anchor_until_an_open_menu_is_closed)
{
    test::seat ears{w->owner()};
    settle();
    pointer->press(BTN_LEFT);
    settle();
    const double anchor = server.pointing.ffm_anchor_x;
    {
        test::popup menu{*w, {.x = 20, .y = 30}, test::popup::draws::always, &ears, ears.press_serial()};
        EVENTUALLY_EQ(menu.configure_count(), 1);
        pointer->release(BTN_LEFT);
        ASSERT_TRUE(wlr_seat_pointer_has_grab(server.seat));
        go(500, 350);
        go(900, 350);
        EXPECT_EQ(keyboard_focus(), tl_surface(t()));
        EXPECT_EQ(server.pointing.ffm_anchor_x, anchor);
    }
    settle();
    ASSERT_FALSE(wlr_seat_pointer_has_grab(server.seat));
    pointer->move(7, 0); // counts from where the pointer was when the menu went
    EXPECT_EQ(keyboard_focus(), tl_surface(t()));
    pointer->move(1, 0);
    EXPECT_EQ(keyboard_focus(), tl_surface(record(*other)));
}

TEST_F(hover_focus, rests_while_a_button_is_held)
{
    pointer->press(BTN_LEFT);
    go(900, 350);
    EXPECT_EQ(keyboard_focus(), tl_surface(t()));
    pointer->release(BTN_LEFT);
    pointer->move(1, 0);
    EXPECT_EQ(keyboard_focus(), tl_surface(record(*other)));
}

TEST_F(hover_focus, reaches_a_window_over_its_border)
{
    go(802, 350); // the border takes the pointer, but it still counts as the window
    EXPECT_EQ(keyboard_focus(), tl_surface(record(*other)));
    EXPECT_EQ(server.seat->pointer_state.focused_surface, nullptr);
}

} // namespace
