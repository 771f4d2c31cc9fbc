// Shaking the pointer to find it: growth, hold and shrinking, at exact times.

#include "support/desktop.hpp"
#include "support/wayland_constraints.hpp"
#include "support/wayland_seat.hpp"

#include "config/settings.hpp"
#include "input/cursor_image.hpp"
#include "input/cursor_locate.hpp"
#include "text.hpp"
#include "windows/layer.hpp"

#include <linux/input-event-codes.h>

using test::made_up_pointer;
using test::seat;
using test::window;

namespace
{

struct locating : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        pointer = &plug_pointer();
        point_at(*pointer, 600, 300);
        g_cursor_shake_magnify = true;
        run_clock(std::chrono::seconds{5}); // past what the start has armed
    }

    // Shakes the pointer, and returns at the moment at which the shake counts.
    void shake()
    {
        for (int i = 0; i < 5; i++) {
            advance_clock_ms(20);
            pointer->move(i % 2 == 0 ? 120 : -120, 0);
        }
        advance_clock_ms(0);
    }

    // Moves the clock in steps, so that the timer fires as often as it would.
    void wait_ms(int ms)
    {
        for (int i = 0; i < ms; i++)
            advance_clock_ms(1);
    }

    [[nodiscard]] uint32_t shown_size() const { return cursor_locate_mgr(server)->size; }

    made_up_pointer *pointer = nullptr;
};

TEST_F(locating, a_shake_loads_nine_sizes_up_to_three_times_the_usual)
{
    EXPECT_EQ(server.locating.xcursor_steps[9], nullptr) << "none is loaded before it is needed";
    shake();
    ASSERT_TRUE(server.locating.cursor_locate_on);
    std::vector<uint32_t> sizes;
    for (size_t i = 1; i < server.locating.xcursor_steps.size(); i++)
        sizes.push_back(server.locating.xcursor_steps[i]->size);
    EXPECT_THAT(sizes, testing::ElementsAre(29, 35, 40, 45, 51, 56, 61, 67, 72));
    EXPECT_EQ(server.locating.xcursor_steps[0], nullptr);
}

TEST_F(locating, the_sizes_follow_theme_and_size_of_the_configuration)
{
    g_cursor_size = 30;
    copy_text(g_cursor_theme, "Adwaita");
    shake();
    EXPECT_EQ(server.locating.xcursor_steps[9]->size, 90U);
    EXPECT_STREQ(server.locating.xcursor_steps[9]->name, "Adwaita");
}

TEST_F(locating, the_cursor_grows_holds_and_shrinks_and_then_nothing_ticks)
{
    shake();
    const int64_t t0 = server.locating.cursor_locate_t0;
    wait_ms(1);
    EXPECT_EQ(server.locating.cursor_locate_step, 0) << "1 - (139/140)^2 of nine steps is none yet";
    wait_ms(16);
    EXPECT_EQ(server.locating.cursor_locate_step, 2); // 17 ms: e is 0.228
    wait_ms(140);
    EXPECT_EQ(server.locating.cursor_locate_step, 9);
    EXPECT_EQ(shown_size(), 72U);
    wait_ms(700 - 157 - 1);
    EXPECT_FALSE(server.locating.cursor_locate_shrinking);
    wait_ms(16);
    EXPECT_TRUE(server.locating.cursor_locate_shrinking);
    EXPECT_GE(server.locating.cursor_locate_shrink_t0, t0 + 700);
    EXPECT_LT(server.locating.cursor_locate_shrink_t0, t0 + 716);
    wait_ms(80);
    EXPECT_GT(server.locating.cursor_locate_step, 0);
    EXPECT_LT(server.locating.cursor_locate_step, 9);
    wait_ms(190);
    EXPECT_FALSE(server.locating.cursor_locate_on);
    EXPECT_FALSE(server.locating.cursor_locate_shrinking);
    EXPECT_EQ(server.locating.cursor_locate_step, 0);
    EXPECT_EQ(shown_size(), server.xcursor_mgr->size);
    EXPECT_FALSE(world.advance_clock_ms(10'000)) << "a timer is still armed";
}

TEST_F(locating, the_steps_follow_their_curves)
{
    shake();
    const int64_t t0 = server.locating.cursor_locate_t0;
    const auto step_at = [&](int64_t ms) {
        EXPECT_TRUE(cursor_locate_anim(server, t0 + ms));
        return server.locating.cursor_locate_step;
    };
    // Growing: 9 (1 - (1 - t/140)^2), rounded.
    EXPECT_EQ(step_at(0), 0);
    EXPECT_EQ(step_at(35), 4); // 3.94
    EXPECT_EQ(step_at(70), 7); // 6.75
    EXPECT_EQ(step_at(139), 9);
    EXPECT_EQ(step_at(699), 9);
    EXPECT_FALSE(server.locating.cursor_locate_shrinking);
    EXPECT_EQ(step_at(700), 9);
    EXPECT_TRUE(server.locating.cursor_locate_shrinking);
    // Shrinking: 9 (1 - t/190)^2, rounded.
    EXPECT_EQ(step_at(700 + 19), 7); // 7.29
    EXPECT_EQ(step_at(700 + 95), 2); // 2.25
    EXPECT_EQ(step_at(700 + 189), 0);
    EXPECT_TRUE(server.locating.cursor_locate_on);
    EXPECT_FALSE(cursor_locate_anim(server, t0 + 700 + 190));
    EXPECT_FALSE(server.locating.cursor_locate_on);
}

TEST_F(locating, another_shake_holds_the_cursor_longer)
{
    shake();
    const int64_t t0 = server.locating.cursor_locate_t0;
    wait_ms(400);
    shake();
    EXPECT_EQ(server.locating.cursor_locate_t0, t0);
    EXPECT_EQ(server.locating.cursor_locate_hold_until, t0 + 400 + 100 + 700);
    wait_ms(690);
    EXPECT_FALSE(server.locating.cursor_locate_shrinking);
    EXPECT_EQ(server.locating.cursor_locate_step, 9);
}

TEST_F(locating, another_shake_brings_a_shrinking_cursor_back_at_once)
{
    shake();
    wait_ms(720);
    ASSERT_TRUE(server.locating.cursor_locate_shrinking);
    shake(); // takes 100 ms
    EXPECT_TRUE(server.locating.cursor_locate_on);
    EXPECT_FALSE(server.locating.cursor_locate_shrinking);
    wait_ms(1);
    EXPECT_EQ(server.locating.cursor_locate_step, 9);
}

TEST_F(locating, no_shake_is_seen_unless_the_user_wants_it)
{
    g_cursor_shake_magnify = false;
    shake();
    EXPECT_FALSE(server.locating.cursor_locate_on);
    EXPECT_EQ(server.locating.shake.shake_n, 0);
}

TEST_F(locating, a_drag_is_no_shake)
{
    window &w = map("w");
    place(w, 0, 0);
    point_at(*pointer, 300, 200);
    pointer->press(BTN_LEFT);
    shake();
    shake();
    EXPECT_FALSE(server.locating.cursor_locate_on);
    EXPECT_EQ(server.locating.shake.shake_n, 0);
    pointer->release(BTN_LEFT);
}

TEST_F(locating, a_press_forgets_the_strokes_before_it)
{
    window &w = map("w");
    place(w, 0, 0);
    point_at(*pointer, 300, 200);
    for (int i = 0; i < 3; i++) {
        advance_clock_ms(20);
        pointer->move(i % 2 == 0 ? 120 : -120, 0);
    }
    EXPECT_GT(server.locating.shake.shake_n, 0);
    pointer->press(BTN_LEFT);
    advance_clock_ms(20);
    pointer->move(1, 0);
    EXPECT_EQ(server.locating.shake.shake_n, 0);
    pointer->release(BTN_LEFT);
}

TEST_F(locating, a_held_pointer_is_not_shaken)
{
    plug_keyboard();
    window &game = map("game", {400, 300});
    place(game, 400, 150);
    seat ears{game.owner()};
    settle();
    {
        test::locked_pointer lock{ears, game.get()};
        EVENTUALLY(lock.active());
        server.locating.shake.shake_n = 0;
        shake();
        EXPECT_EQ(server.locating.shake.shake_n, 0);
    }
    settle();
    test::confined_pointer fence{ears, game.get(), test::region_box{100, 100, 200, 100}};
    EVENTUALLY(fence.active());
    shake();
    EXPECT_EQ(server.locating.shake.shake_n, 0);
    wlr_cursor_warp(server.cursor, nullptr, 420, 170); // beside the region, where it moves freely
    server.locating.shake.shake_n = 0;
    pointer->move(1, 0);
    EXPECT_EQ(server.cursor->x, 421);
    EXPECT_EQ(server.locating.shake.shake_n, 0);
    EXPECT_FALSE(server.locating.cursor_locate_on);
}

TEST_F(locating, absolute_devices_do_not_shake)
{
    for (int i = 0; i < 10; i++) {
        advance_clock_ms(20);
        pointer->move_to(i % 2 == 0 ? 0.2 : 0.8, 0.5);
    }
    EXPECT_EQ(server.locating.shake.shake_n, 0);
}

// What a magnified cursor shows

struct magnified : locating {
    void SetUp() override
    {
        locating::SetUp();
        page = &map("page", {1000, 600});
        place(*page, 100, 50);
        ears = std::make_unique<seat>(page->owner());
        settle();
        pointer->move(0, 1);
        settle();
        arrow = page->owner().create_surface("arrow");
        ears->set_cursor(arrow, 3, 4);
        page->owner().paint(arrow, {16, 16}, 0xffff0000);
        settle();
    }

    void TearDown() override
    {
        if (arrow != nullptr)
            page->owner().destroy_surface(arrow);
        ears.reset();
        desktop::TearDown();
    }

    void magnify()
    {
        shake();
        wait_ms(157);
        ASSERT_EQ(server.locating.cursor_locate_step, 9);
    }

    // The pixel of the client's cursor surface beside its hotspot.
    uint32_t pixel_of_cursor() { return pixel("A", int(server.cursor->x) + 5, int(server.cursor->y) + 5); }

    window *page = nullptr;
    std::unique_ptr<seat> ears;
    wl_surface *arrow = nullptr;
};

TEST_F(magnified, a_clients_cursor_gives_way_to_the_default_image_and_comes_back)
{
    EVENTUALLY_EQ(pixel_of_cursor(), 0xffff0000U);
    magnify();
    settle();
    EXPECT_NE(pixel_of_cursor(), 0xffff0000U);
    EXPECT_FALSE(server.cursor_shown.cur_cursor_named);
    wait_ms(900);
    ASSERT_EQ(server.locating.cursor_locate_step, 0);
    EVENTUALLY_EQ(pixel_of_cursor(), 0xffff0000U);
}

TEST_F(magnified, a_cursor_that_its_client_sets_meanwhile_shows_afterwards)
{
    magnify();
    wl_surface *other = page->owner().create_surface("other");
    ears->set_cursor(other, 0, 0);
    page->owner().paint(other, {16, 16}, 0xff0000ff);
    settle();
    EXPECT_NE(pixel_of_cursor(), 0xff0000ffU);
    EXPECT_NE(server.cursor_shown.cur_cursor_surface, nullptr);
    wait_ms(900);
    EVENTUALLY_EQ(pixel_of_cursor(), 0xff0000ffU);
    page->owner().destroy_surface(other);
}

TEST_F(magnified, a_cursor_surface_that_dies_meanwhile_leaves_the_default_image)
{
    magnify();
    page->owner().destroy_surface(arrow);
    arrow = nullptr;
    settle();
    EXPECT_TRUE(server.cursor_shown.cur_cursor_named);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "default"));
    wait_ms(900);
    EXPECT_EQ(server.locating.cursor_locate_step, 0);
}

TEST_F(magnified, a_shape_keeps_its_name_in_every_size)
{
    ears->set_shape(9); // text
    settle();
    magnify();
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "text"));
    wait_ms(900);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "text"));
}

TEST_F(magnified, a_step_that_could_not_be_loaded_shows_the_usual_size)
{
    magnify();
    wlr_xcursor_manager *missing = std::exchange(server.locating.xcursor_steps[9], nullptr);
    EXPECT_EQ(cursor_locate_mgr(server), server.xcursor_mgr);
    cursor_reassert(server);
    settle();
    EXPECT_NE(pixel_of_cursor(), 0xffff0000U) << "the default image, not the client's";
    wlr_xcursor_manager_destroy(missing);
}

TEST_F(magnified, the_sizes_can_be_dropped_while_one_is_shown)
{
    magnify();
    cursor_locate_drop_steps(server);
    for (const wlr_xcursor_manager *step : server.locating.xcursor_steps)
        EXPECT_EQ(step, nullptr);
    EXPECT_EQ(cursor_locate_mgr(server), server.xcursor_mgr);
    output_state twice; // makes the cursor load its image again, from the theme that it holds
    wlr_output_state_set_scale(&twice, 2);
    EXPECT_TRUE(wlr_output_commit_state(output("A").wlr_output, &twice));
    arrange_all_layers(server);
    settle();
}

TEST_F(magnified, sizes_that_were_dropped_are_loaded_by_the_next_shake)
{
    magnify();
    cursor_locate_drop_steps(server);
    shake();
    EXPECT_NE(cursor_locate_mgr(server), server.xcursor_mgr);
}

TEST_F(magnified, a_shape_for_a_tablets_tool_is_not_for_the_pointer)
{
    wlr_cursor_shape_manager_v1_request_set_shape_event event{};
    event.seat_client = server.seat->pointer_state.focused_client;
    event.device_type = WLR_CURSOR_SHAPE_MANAGER_V1_DEVICE_TYPE_TABLET_TOOL;
    event.shape = decltype(event.shape)(9);
    seat_request_set_cursor_shape(server, &event);
    EXPECT_FALSE(server.cursor_shown.cur_cursor_named);
    event.device_type = WLR_CURSOR_SHAPE_MANAGER_V1_DEVICE_TYPE_POINTER;
    seat_request_set_cursor_shape(server, &event);
    EXPECT_TRUE(text_equals(server.cursor_shown.cur_cursor_name, "text"));
}

TEST_F(magnified, a_session_may_end_meanwhile)
{
    magnify();
}

} // namespace
