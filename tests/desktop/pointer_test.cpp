// Pointer motion, buttons and cursor images, as clients see them.

#include "support/desktop.hpp"
#include "support/wayland_popup.hpp"
#include "support/wayland_seat.hpp"

#include "input/cursor_image.hpp"
#include "input/hit_test.hpp"
#include "text.hpp"

#include <linux/input-event-codes.h>

using test::made_up_pointer;
using test::seat;
using test::window;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace
{

// A window of 400x300 at 100,100 on an output of 1280x704, and a pointer outside of it.
struct pointing : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        pointer = &plug_pointer();
        page = &map("page", {400, 300});
        place(*page, 100, 100);
        ears = std::make_unique<seat>(page->owner());
        settle();
        (void)ears->take();
    }

    void TearDown() override
    {
        ears.reset();
        desktop::TearDown();
    }

    void go(double lx, double ly) { point_at(*pointer, lx, ly); }

    std::vector<std::string> events()
    {
        settle();
        return ears->take();
    }

    wlr_surface *surface_of(const window &w) { return tl_surface(record(w)); }

    made_up_pointer *pointer = nullptr;
    window *page = nullptr;
    std::unique_ptr<seat> ears;
};

TEST_F(pointing, enters_a_window_at_the_point_and_moves_over_it)
{
    go(110, 120);
    go(111, 120.5);
    EXPECT_THAT(events(), ElementsAre("pointer enter page 10,20", "motion 11,20.5"));
    EXPECT_GE(ears->frames(), 2);
}

TEST_F(pointing, leaves_the_window_for_the_desktop)
{
    go(110, 120);
    go(50, 50);
    EXPECT_THAT(events(), ElementsAre("pointer enter page 10,20", "pointer leave page"));
    EXPECT_EQ(server.seat->pointer_state.focused_surface, nullptr);
}

TEST_F(pointing, sees_the_upper_of_two_windows)
{
    auto &above = map("above", {400, 300});
    place(above, 300, 200);
    seat other{above.owner()};
    settle();
    go(350, 250);
    EVENTUALLY(other.heard("pointer enter above 50,50"));
    EXPECT_THAT(events(), Not(Contains(StartsWith("pointer"))));
}

TEST_F(pointing, follows_absolute_devices)
{
    pointer->move_to(0.25, 0.5);
    EXPECT_NEAR(server.cursor->x, 320, 1);
    EXPECT_NEAR(server.cursor->y, 352, 1);
    EXPECT_THAT(events(), Contains(StartsWith("pointer enter page")));
}

TEST_F(pointing, skips_the_parts_of_a_window_that_take_no_input)
{
    page->input_region(0, 0, 200, 300);
    page->commit();
    settle();
    go(350, 200);
    EXPECT_THAT(events(), IsEmpty());
    go(150, 200);
    EXPECT_THAT(events(), ElementsAre("pointer enter page 50,100"));
}

// Buttons

TEST_F(pointing, a_press_focuses_and_raises_the_window_and_reaches_it)
{
    plug_keyboard();
    auto &other = map("other", {200, 200});
    place(other, 700, 300);
    go(110, 120);
    (void)events();
    pointer->click(BTN_LEFT);
    EXPECT_THAT(events(), testing::IsSupersetOf({"keys enter page", "button down 272", "button up 272"}));
    EXPECT_EQ(keyboard_focus(), surface_of(*page));
    EXPECT_EQ(each<&vantore_toplevel::link>(server.toplevels).first(), &record(*page));
}

TEST_F(pointing, a_press_on_the_desktop_keeps_the_focus)
{
    go(50, 50);
    pointer->click(BTN_LEFT);
    EXPECT_EQ(keyboard_focus(), surface_of(*page));
}

TEST_F(pointing, a_release_focuses_nothing)
{
    auto &other = map("other", {200, 200});
    place(other, 700, 300);
    go(110, 120);
    pointer->release(BTN_LEFT);
    EXPECT_EQ(keyboard_focus(), surface_of(other));
}

TEST_F(pointing, a_press_while_locked_moves_no_focus)
{
    auto &other = map("other", {200, 200});
    place(other, 700, 300);
    go(110, 120);
    server.locked = true;
    server.tap.mod_tapped = true;
    pointer->click(BTN_LEFT);
    EXPECT_EQ(keyboard_focus(), surface_of(other));
    EXPECT_EQ(each<&vantore_toplevel::link>(server.toplevels).first(), &record(other));
    EXPECT_FALSE(server.tap.mod_tapped);
    server.locked = false;
}

TEST_F(pointing, motion_while_locked_reaches_what_the_scene_shows_with_the_default_cursor)
{
    server.locked = true;
    go(110, 120);
    EXPECT_THAT(events(), ElementsAre("pointer enter page 10,20"));
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "default"));
    go(50, 50);
    EXPECT_THAT(events(), ElementsAre("pointer leave page"));
    server.locked = false;
}

TEST_F(pointing, a_pressed_button_keeps_motion_with_its_client_beyond_the_edges)
{
    auto &other = map("other", {200, 200});
    place(other, 700, 300);
    seat other_ears{other.owner()};
    settle();
    go(110, 120);
    pointer->press(BTN_LEFT);
    (void)events();
    (void)other_ears.take();
    go(90, 90);
    go(750, 350);
    EXPECT_THAT(events(), ElementsAre("motion -10,-10", "motion 650,250"));
    EXPECT_THAT(other_ears.take(), Not(Contains(StartsWith("pointer enter"))));
    pointer->release(BTN_LEFT);
    go(751, 350);
    EXPECT_THAT(events(), ElementsAre("button up 272", "pointer leave page"));
    EXPECT_THAT(other_ears.take(), Contains("pointer enter other 51,50"));
}

TEST_F(pointing, a_pressed_button_follows_a_window_that_moves_under_the_pointer)
{
    go(110, 120);
    pointer->press(BTN_LEFT);
    place(*page, 105, 105);
    go(111, 121); // within the surface, so its own coordinates count again
    (void)events();
    go(50, 50);
    settle();
    EXPECT_EQ(ears->last_motion(), "-55,-55");
}

TEST_F(pointing, the_wheel_tells_its_way_and_its_steps)
{
    go(110, 120);
    (void)events();
    pointer->scroll(WL_POINTER_AXIS_VERTICAL_SCROLL, 15, 120);
    pointer->scroll(WL_POINTER_AXIS_HORIZONTAL_SCROLL, -7.5, -60);
    EXPECT_THAT(events(), ElementsAre("axis source 0", "axis120 0 120", "axis 0 15", "axis source 0",
                                      "axis120 1 -60", "axis 1 -7.5"));
}

TEST_F(pointing, a_client_that_dies_while_pressed_leaves_the_pointer_free)
{
    auto &other = map("other", {200, 200});
    place(other, 700, 300);
    seat other_ears{other.owner()};
    settle();
    go(110, 120);
    pointer->press(BTN_LEFT);
    page->owner().vanish();
    EVENTUALLY(server.seat->pointer_state.focused_surface == nullptr);
    go(710, 310);
    EVENTUALLY(other_ears.heard("pointer enter other 10,10"));
}

// Cursor images

TEST_F(pointing, the_cursor_over_the_desktop_is_the_default_one)
{
    go(50, 50);
    EXPECT_TRUE(server.cursor_shown.cur_cursor_named);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "default"));
}

TEST_F(pointing, a_client_sets_a_surface_with_its_hotspot_until_the_pointer_leaves)
{
    go(110, 120);
    settle();
    wl_surface *arrow = page->owner().create_surface("arrow");
    ears->set_cursor(arrow, 3, 4);
    page->owner().paint(arrow, {16, 16}, 0xffff0000);
    settle();
    ASSERT_NE(server.cursor_shown.cur_cursor_surface, nullptr);
    EXPECT_FALSE(server.cursor_shown.cur_cursor_named);
    EXPECT_EQ(server.cursor_shown.cur_cursor_hx, 3);
    EXPECT_EQ(server.cursor_shown.cur_cursor_hy, 4);
    EVENTUALLY_EQ(pixel("A", 115, 125), 0xffff0000U); // 110-3+8, 120-4+9
    go(50, 50);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "default"));
    EXPECT_EQ(server.cursor_shown.cur_cursor_surface, nullptr);
    page->owner().destroy_surface(arrow);
    settle();
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "default"));
}

TEST_F(pointing, a_cursor_surface_that_dies_gives_way_to_the_default)
{
    go(110, 120);
    settle();
    wl_surface *arrow = page->owner().create_surface("arrow");
    ears->set_cursor(arrow, 0, 0);
    settle();
    ASSERT_NE(server.cursor_shown.cur_cursor_surface, nullptr);
    page->owner().destroy_surface(arrow);
    settle();
    EXPECT_EQ(server.cursor_shown.cur_cursor_surface, nullptr);
    EXPECT_TRUE(server.cursor_shown.cur_cursor_named);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "default"));
}

TEST_F(pointing, a_client_may_hide_the_cursor)
{
    go(110, 120);
    settle();
    ears->set_cursor(nullptr, 0, 0);
    settle();
    EXPECT_FALSE(server.cursor_shown.cur_cursor_named);
    EXPECT_EQ(server.cursor_shown.cur_cursor_surface, nullptr);
    go(50, 50);
    EXPECT_TRUE(server.cursor_shown.cur_cursor_named);
}

TEST_F(pointing, a_client_sets_a_shape_by_name)
{
    go(110, 120);
    settle();
    ears->set_shape(9); // text
    settle();
    EXPECT_TRUE(server.cursor_shown.cur_cursor_named);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "text"));
}

TEST_F(pointing, a_shape_for_a_tablets_pen_leaves_the_pointer_its_image)
{
    go(50, 50);
    go(110, 120);
    settle();
    wlr_cursor_shape_manager_v1_request_set_shape_event event{};
    event.seat_client = server.seat->pointer_state.focused_client;
    event.device_type = WLR_CURSOR_SHAPE_MANAGER_V1_DEVICE_TYPE_TABLET_TOOL;
    event.shape = WP_CURSOR_SHAPE_DEVICE_V1_SHAPE_TEXT;
    seat_request_set_cursor_shape(server, &event);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "default"));
    event.device_type = WLR_CURSOR_SHAPE_MANAGER_V1_DEVICE_TYPE_POINTER;
    seat_request_set_cursor_shape(server, &event);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "text"));
}

TEST_F(pointing, a_client_without_the_pointer_sets_no_cursor)
{
    go(110, 120);
    settle();
    go(50, 50);
    settle();
    wl_surface *arrow = page->owner().create_surface("arrow");
    ears->set_cursor(arrow, 0, 0);
    ears->set_shape(9);
    settle();
    EXPECT_EQ(server.cursor_shown.cur_cursor_surface, nullptr);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "default"));
    page->owner().destroy_surface(arrow);
}

TEST_F(pointing, a_long_cursor_name_is_cut)
{
    set_named_cursor(server, std::string(60, 'x').c_str());
    EXPECT_EQ(text_of(server.cursor_shown.cur_cursor_name), std::string(47, 'x'));
}

// Hit tests

TEST_F(pointing, hit_tests_tell_a_popups_surface_and_its_windows_record)
{
    test::popup menu{*page, {.x = 390, .y = 290}};
    EVENTUALLY(menu.configure_count() > 0);
    settle();
    surface_hit hit;
    const vantore_toplevel *t = desktop_toplevel_at(server, 100 + 400 + 20, 100 + 300 + 20, hit);
    EXPECT_EQ(t, &record(*page));
    ASSERT_NE(hit.surface, nullptr);
    EXPECT_NE(hit.surface, surface_of(*page));
    EXPECT_EQ(hit.sx, 30);
    EXPECT_EQ(hit.sy, 30);
    EXPECT_EQ(surface_at(server, 520, 420).surface, hit.surface);
}

TEST_F(pointing, hit_tests_find_no_surface_on_the_desktop)
{
    surface_hit hit;
    EXPECT_EQ(desktop_toplevel_at(server, 50, 50, hit), nullptr);
    EXPECT_EQ(hit.surface, nullptr);
}

} // namespace
