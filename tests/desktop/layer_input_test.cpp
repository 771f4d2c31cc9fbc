// The keyboard and the pointer in panels and launchers.

#include "support/layers.hpp"
#include "support/wayland_popup.hpp"
#include "support/wayland_seat.hpp"

#include "config/settings.hpp"
#include "input/hit_test.hpp"
#include "presentation/decorations.hpp"
#include "text.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"

#include <linux/input-event-codes.h>

using test::BOTTOM;
using test::keyboard_wish;
using test::layer;
using test::layer_surface;
using test::layer_traits;
using test::layers;
using test::LEFT;
using test::TOP;
using test::top_bar;
using test::window;

namespace
{

struct layers_with_keyboard : layers, testing::WithParamInterface<keyboard_wish> {
    void SetUp() override
    {
        layers::SetUp();
        plug_keyboard();
        active_windows = test::activity::may_lag;
    }

    static layer_traits launcher()
    {
        return {.name = "launcher", .on = layer::overlay, .size = {300, 200}, .keyboard = GetParam()};
    }
};

INSTANTIATE_TEST_SUITE_P(either, layers_with_keyboard,
                         testing::Values(keyboard_wish::exclusive, keyboard_wish::on_demand));

TEST_P(layers_with_keyboard, take_it_and_give_it_back)
{
    window &page = map("page");
    test::seat ears{page.owner()};
    settle();
    (void)heard();
    layer_surface &l = show(launcher());
    EXPECT_TRUE(has_keyboard(l));
    EVENTUALLY(ears.heard("keys leave page"));
    l.destroy();
    EVENTUALLY(has_keyboard(page));
    EVENTUALLY(ears.heard("keys enter page"));
}

TEST_P(layers_with_keyboard, hear_the_keys)
{
    test::client &c = connect();
    test::seat ears{c};
    settle();
    layer_surface &l = create(c, launcher());
    EVENTUALLY(has_keyboard(l));
    test::made_up_keyboard &keys = plug_keyboard("another");
    keys.tap(KEY_A);
    EVENTUALLY(ears.heard("key down 30"));
}

TEST_P(layers_with_keyboard, do_not_leave_two_windows_active)
{
    window &page = map("page"), &editor = map("editor");
    layer_surface &l = show(launcher());
    EVENTUALLY(editor.has(test::ACTIVATED) && has_keyboard(l));
    focus_toplevel_ex(&record(page), true);
    EVENTUALLY(page.has(test::ACTIVATED));
    EVENTUALLY(!editor.has(test::ACTIVATED));
}

TEST_P(layers_with_keyboard, do_not_keep_a_window_active_that_nobody_sees)
{
    window &page = map("page");
    layer_surface &l = show(launcher());
    toplevel_minimize(record(page));
    EVENTUALLY(!page.has(test::ACTIVATED));
    EXPECT_TRUE(has_keyboard(l));
}

TEST_P(layers_with_keyboard, do_not_keep_a_window_active_that_is_unmapped_meanwhile)
{
    window &page = map("page");
    show(launcher());
    page.unmap();
    settle();
    map("editor");
    unplug("A");
    map(page);
    EXPECT_FALSE(page.has(test::ACTIVATED));
}

TEST_P(layers_with_keyboard, leave_the_window_its_active_look)
{
    window &page = map("page");
    show(launcher());
    settle();
    EXPECT_TRUE(page.has(test::ACTIVATED));
}

TEST_P(layers_with_keyboard, lose_it_to_a_window_and_take_it_back_with_their_next_commit)
{
    layer_surface &l = show(launcher());
    window &page = map("page");
    EXPECT_TRUE(has_keyboard(page));
    l.commit();
    EVENTUALLY(has_keyboard(l));
}

TEST_P(layers_with_keyboard, get_nothing_before_they_are_mapped)
{
    window &page = map("page");
    layer_traits traits = launcher();
    traits.opens = false;
    layer_surface &l = create(traits);
    l.auto_draw = false;
    l.commit();
    EVENTUALLY_EQ(l.configure_count(), 1);
    settle();
    EXPECT_TRUE(has_keyboard(page));
}

TEST_P(layers_with_keyboard, give_it_back_when_they_do_not_want_it_any_more)
{
    window &page = map("page");
    layer_surface &l = show(launcher());
    l.keyboard(keyboard_wish::none);
    l.commit();
    EVENTUALLY(has_keyboard(page));
}

TEST_P(layers_with_keyboard, give_it_back_when_they_are_unmapped)
{
    window &page = map("page");
    layer_surface &l = show(launcher());
    l.unmap();
    EVENTUALLY(has_keyboard(page));
    EXPECT_EQ(l.owner().error(), 0);
}

TEST_P(layers_with_keyboard, give_it_back_when_their_output_goes)
{
    window &page = map("page");
    plug("B", 640, 640);
    layer_traits traits = launcher();
    traits.output = "B";
    layer_surface &l = show(traits);
    EXPECT_TRUE(has_keyboard(l));
    unplug("B");
    EXPECT_TRUE(has_keyboard(page));
}

TEST_P(layers_with_keyboard, that_go_without_having_it_leave_the_focus_alone)
{
    window &low = map("low");
    layer_surface &l = show(launcher());
    map("high");
    focus_toplevel_ex(&record(low), false);
    l.destroy();
    settle();
    EXPECT_TRUE(has_keyboard(low));
}

TEST_P(layers_with_keyboard, keep_it_where_no_window_is_there_to_take_it)
{
    layer_surface &l = show(launcher());
    l.unmap();
    settle();
    EXPECT_TRUE(has_keyboard(l));
    window &page = map("page");
    EXPECT_TRUE(has_keyboard(page));
}

TEST_P(layers_with_keyboard, do_not_take_it_while_the_session_is_locked)
{
    window &page = map("page");
    server.locked = true;
    layer_surface &l = show(launcher());
    l.commit();
    settle();
    EXPECT_TRUE(has_keyboard(page));
    EXPECT_EQ(box(l).width, 300); // it is arranged nevertheless
    server.locked = false;
    l.commit();
    EVENTUALLY(has_keyboard(l));
}

TEST_P(layers_with_keyboard, that_have_it_when_the_session_is_locked_do_not_hand_it_to_a_window)
{
    map("page");
    layer_surface &l = show(launcher());
    server.locked = true;
    l.keyboard(keyboard_wish::none);
    l.commit();
    settle();
    EXPECT_TRUE(has_keyboard(l));
    server.locked = false;
}

TEST_P(layers_with_keyboard, take_it_past_an_open_menu)
{
    window &page = map("page", {400, 300});
    place(page, 100, 100);
    test::made_up_pointer &pointer = plug_pointer();
    test::seat ears{page.owner()};
    settle();
    point_at(pointer, 110, 120);
    pointer.press(BTN_LEFT);
    settle();
    test::popup menu{page, {.x = 20, .y = 30}, test::popup::draws::always, &ears, ears.press_serial()};
    EVENTUALLY_EQ(menu.configure_count(), 1);
    pointer.release(BTN_LEFT);
    layer_surface &l = show(launcher());
    EVENTUALLY(has_keyboard(l));
}

// While the user protects the focus

TEST_F(layers, with_protected_focus_take_the_keyboard_on_demand_when_they_appear_and_by_a_click)
{
    g_protect_focus = true;
    active_windows = test::activity::may_lag;
    test::made_up_pointer &pointer = plug_pointer();
    layer_surface &l = show({.size = {200, 100}, .anchor = TOP | LEFT, .keyboard = keyboard_wish::on_demand});
    EXPECT_TRUE(has_keyboard(l));
    window &page = map("page");
    l.commit();
    settle();
    EXPECT_TRUE(has_keyboard(page));
    point_at(pointer, 50, 50);
    pointer.click(BTN_LEFT);
    EXPECT_TRUE(has_keyboard(l));
    l.keyboard(keyboard_wish::none);
    l.commit();
    EVENTUALLY(has_keyboard(page));
    pointer.click(BTN_LEFT);
    settle();
    EXPECT_TRUE(has_keyboard(page));
}

TEST_F(layers, with_protected_focus_still_take_the_keyboard_for_themselves_with_each_commit)
{
    g_protect_focus = true;
    active_windows = test::activity::may_lag;
    layer_surface &l = show({.size = {200, 100}, .keyboard = keyboard_wish::exclusive});
    window &page = map("page");
    EXPECT_TRUE(has_keyboard(page));
    l.commit();
    EVENTUALLY(has_keyboard(l));
}

TEST_F(layers, with_protected_focus_do_not_take_the_keyboard_while_the_session_is_locked)
{
    g_protect_focus = true;
    window &page = map("page");
    server.locked = true;
    show({.size = {200, 100}, .keyboard = keyboard_wish::on_demand});
    EXPECT_TRUE(has_keyboard(page));
    server.locked = false;
}

TEST_F(layers, without_a_wish_for_the_keyboard_do_not_get_it)
{
    window &page = map("page");
    show(top_bar(40));
    EXPECT_TRUE(has_keyboard(page));
}

TEST_F(layers, get_the_keyboard_also_where_there_is_none)
{
    layer_surface &l = show({.size = {10, 10}, .keyboard = keyboard_wish::exclusive});
    EXPECT_TRUE(has_keyboard(l));
}

// The pointer

struct pointed_layers : layers {
    void SetUp() override
    {
        layers::SetUp();
        pointer = &plug_pointer();
        point_at(*pointer, 1200, 600); // away from the panel
        window &low_window = map("low", {400, 300});
        place(low_window, 0, 100);
        low = &low_window;
        high = &map("high", {400, 300});
        place(*high, 600, 100);
        panel = &show({.size = {200, 200}, .anchor = TOP | LEFT}); // covers a part of low
        ears = std::make_unique<test::seat>(panel->owner());
        settle();
    }

    void TearDown() override
    {
        ears.reset();
        layers::TearDown();
    }

    test::made_up_pointer *pointer = nullptr;
    window *low = nullptr, *high = nullptr;
    layer_surface *panel = nullptr;
    std::unique_ptr<test::seat> ears;
};

TEST_F(pointed_layers, hear_the_pointer_and_belong_to_no_window)
{
    point_at(*pointer, 50, 150);
    EVENTUALLY(ears->heard("pointer enter panel 50,150"));
    surface_hit hit;
    EXPECT_EQ(desktop_toplevel_at(server, 50, 150, hit), nullptr);
    EXPECT_EQ(hit.surface, find(*panel)->layer_surface->surface);
}

TEST_F(pointed_layers, hold_presses_to_themselves)
{
    point_at(*pointer, 50, 150);
    pointer->click(BTN_LEFT);
    EVENTUALLY(ears->heard("button up 272"));
    EXPECT_TRUE(has_keyboard(*high));
    point_at(*pointer, 300, 150);
    pointer->click(BTN_LEFT);
    EXPECT_TRUE(has_keyboard(*low));
}

TEST_F(pointed_layers, keep_the_cursor_image_that_they_set)
{
    point_at(*pointer, 50, 150);
    settle();
    ears->set_shape(9); // text
    settle();
    point_at(*pointer, 60, 160);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "text"));
    point_at(*pointer, 1200, 600); // nobody's surface
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "default"));
}

TEST_F(pointed_layers, are_told_from_windows)
{
    EXPECT_TRUE(is_layer(surface_at(server, 50, 150).surface));
    EXPECT_FALSE(is_layer(surface_at(server, 300, 150).surface));
    EXPECT_FALSE(is_layer(surface_at(server, 1200, 600).surface));
}

TEST_F(pointed_layers, may_go_while_the_pointer_is_in_them)
{
    point_at(*pointer, 50, 150);
    pointer->press(BTN_LEFT);
    EVENTUALLY(ears->heard("button down 272"));
    panel->destroy();
    settle();
    pointer->release(BTN_LEFT);
    point_at(*pointer, 60, 160);
    settle();
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(*low)));
}

TEST_F(pointed_layers, win_over_a_title_bar)
{
    record(*low).ssd = true;
    dec_layout(record(*low));
    place(*low, 0, 230);
    vantore_dec_region region = DEC_NONE;
    EXPECT_EQ(decoration_at(server, 300, 220, region), &record(*low));
    place(*low, 0, 100);
    EXPECT_EQ(decoration_at(server, 50, 90, region), nullptr);
}

TEST_F(pointed_layers, give_the_keyboard_back_to_the_window_that_had_it)
{
    g_focus_follows_mouse = true;
    active_windows = test::activity::may_lag;
    point_at(*pointer, 300, 150);
    point_at(*pointer, 320, 150);
    ASSERT_TRUE(has_keyboard(*low)); // the other is still the one raised last
    layer_surface &launcher = show(
        {.on = layer::overlay, .size = {50, 50}, .anchor = BOTTOM, .keyboard = keyboard_wish::on_demand});
    EXPECT_TRUE(has_keyboard(launcher));
    launcher.destroy();
    settle();
    EXPECT_TRUE(has_keyboard(*low));
}

TEST_F(pointed_layers, with_the_keyboard_keep_it_from_a_focus_that_follows_the_mouse)
{
    g_focus_follows_mouse = true;
    active_windows = test::activity::may_lag;
    layer_surface &launcher = show(
        {.on = layer::overlay, .size = {50, 50}, .anchor = BOTTOM, .keyboard = keyboard_wish::on_demand});
    point_at(*pointer, 300, 150);
    EXPECT_TRUE(has_keyboard(launcher));
    launcher.destroy();
    settle();
    EXPECT_TRUE(has_keyboard(*high));
    point_at(*pointer, 307, 150); // the anchor has followed the pointer
    EXPECT_TRUE(has_keyboard(*high));
    point_at(*pointer, 308, 150);
    EXPECT_TRUE(has_keyboard(*low));
}

} // namespace
