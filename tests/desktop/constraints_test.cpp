// Games that lock or confine the pointer, and hear how far it was moved.

#include "support/desktop.hpp"
#include "support/wayland_constraints.hpp"
#include "support/wayland_layer.hpp"

#include "config/settings.hpp"
#include "windows/states.hpp"
#include "workspaces/focus.hpp"

#include <linux/input-event-codes.h>

using test::confined_pointer;
using test::constraint_life;
using test::layer_surface;
using test::locked_pointer;
using test::made_up_pointer;
using test::relative_pointer;
using test::seat;
using test::window;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace
{

// A game of 400x300 at 100,100 that has the keyboard, with the pointer in its middle.
struct gaming : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        plug_keyboard();
        pointer = &plug_pointer();
        game = &map("game", {400, 300});
        place(*game, 100, 100);
        ears = std::make_unique<seat>(game->owner());
        settle();
        go(300, 250);
        settle();
        (void)ears->take();
    }

    void TearDown() override
    {
        ears.reset();
        desktop::TearDown();
    }

    void go(double lx, double ly) { point_at(*pointer, lx, ly); }

    window &map_other()
    {
        window &other = map("other", {200, 200});
        place(other, 700, 300);
        return other;
    }

    void focus(const window &w)
    {
        focus_toplevel_ex(&record(w), true);
        settle();
    }

    void expect_cursor_at(double lx, double ly)
    {
        EXPECT_DOUBLE_EQ(server.cursor->x, lx);
        EXPECT_DOUBLE_EQ(server.cursor->y, ly);
    }

    made_up_pointer *pointer = nullptr;
    window *game = nullptr;
    std::unique_ptr<seat> ears;
};

// Relative motion

TEST_F(gaming, a_client_hears_how_far_the_device_moved_in_microseconds)
{
    relative_pointer moves{*ears};
    settle();
    wlr_pointer_motion_event event{.pointer = &pointer->base,
                                   .time_msec = 4'294'967'295,
                                   .delta_x = 1.5,
                                   .delta_y = -2,
                                   .unaccel_dx = 3,
                                   .unaccel_dy = -4};
    wl_signal_emit_mutable(&pointer->base.events.motion, &event);
    settle();
    EXPECT_THAT(moves.take(), ElementsAre("1.5,-2 raw 3,-4 at 4294967295000"));
}

TEST_F(gaming, an_absolute_device_tells_its_distance_from_the_cursor)
{
    relative_pointer moves{*ears};
    settle();
    pointer->move_to(0.25, 0.5); // 320,352
    settle();
    EXPECT_THAT(moves.take(), ElementsAre(StartsWith("20,102 raw 20,102 at ")));
}

TEST_F(gaming, a_lifted_overlay_takes_relative_motion_from_what_lies_under_it)
{
    relative_pointer moves{*ears};
    vantore_toplevel &overlay = record(map_other());
    settle();
    overlay.overlay_lift = true;
    restore_toplevel_parent(overlay);
    pointer->move(5, 5);
    settle();
    EXPECT_THAT(moves.take(), IsEmpty());
    pointer->move_to(0.25, 0.5);
    settle();
    EXPECT_THAT(moves.take(), Not(IsEmpty())) << "absolute devices tell theirs all the same";
    overlay.overlay_lift = false;
    restore_toplevel_parent(overlay);
}

// Locks

TEST_F(gaming, a_lock_of_the_focused_window_holds_the_cursor_while_relative_motion_goes_on)
{
    locked_pointer lock{*ears, game->get()};
    relative_pointer moves{*ears};
    EVENTUALLY(lock.active());
    (void)ears->take();
    pointer->move(7, 8);
    settle();
    expect_cursor_at(300, 250);
    EXPECT_THAT(moves.take(), ElementsAre(StartsWith("7,8 raw 7,8 at ")));
    EXPECT_THAT(ears->take(), Not(Contains(StartsWith("motion"))));
}

TEST_F(gaming, a_lock_holds_absolute_devices_too)
{
    locked_pointer lock{*ears, game->get()};
    relative_pointer moves{*ears};
    EVENTUALLY(lock.active());
    pointer->move_to(0.25, 0.5);
    settle();
    expect_cursor_at(300, 250);
    EXPECT_THAT(moves.take(), ElementsAre(StartsWith("20,102 raw 20,102 at ")));
}

TEST_F(gaming, a_lock_ends_when_the_last_window_is_minimized)
{
    locked_pointer lock{*ears, game->get()};
    EVENTUALLY(lock.active());
    toplevel_minimize(record(*game));
    EVENTUALLY(!lock.active());
    EXPECT_EQ(server.active_constraint, nullptr);
    EXPECT_EQ(keyboard_focus(), nullptr);
}

TEST_F(gaming, a_lock_without_the_keyboard_waits_for_it)
{
    window &other = map_other();
    locked_pointer lock{*ears, game->get()};
    settle();
    go(310, 260);
    settle();
    EXPECT_FALSE(lock.active()) << "the pointer alone is not enough";
    EXPECT_THAT(ears->take(), Contains("motion 210,160"));
    focus(*game);
    EXPECT_TRUE(lock.active());
    EXPECT_NE(find_record(other), nullptr);
}

TEST_F(gaming, a_focus_that_moves_on_unlocks_the_pointer_at_the_clients_hint)
{
    window &other = map_other();
    focus(*game);
    locked_pointer lock{*ears, game->get()};
    lock.hint(30, 40.5);
    game->commit();
    EVENTUALLY(lock.active());
    focus(other);
    EXPECT_FALSE(lock.active());
    expect_cursor_at(130, 140.5);
    go(140, 150);
    expect_cursor_at(140, 150);
}

TEST_F(gaming, a_hint_counts_from_the_surface_also_where_the_client_draws_shadows)
{
    window &other = map_other();
    game->geometry(26, 20, 300, 200);
    game->fill(0xff00ff00);
    settle();
    place(*game, 100, 100); // places the content; the surface is at 74,80
    focus(*game);
    locked_pointer lock{*ears, game->get()};
    lock.hint(30, 40);
    game->commit();
    EVENTUALLY(lock.active());
    focus(other);
    expect_cursor_at(104, 120);
}

TEST_F(gaming, a_lock_keeps_the_pointer_from_other_windows)
{
    map_other();
    focus(*game);
    g_focus_follows_mouse = true;
    locked_pointer lock{*ears, game->get()};
    EVENTUALLY(lock.active());
    pointer->move(500, 150); // the other window's middle
    settle();
    expect_cursor_at(300, 250);
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(*game)));
    EXPECT_TRUE(lock.active());
}

TEST_F(gaming, a_window_that_wants_the_pointer_is_not_focused_by_hovering)
{
    window &other = map_other();
    g_focus_follows_mouse = true;
    locked_pointer lock{*ears, game->get()};
    settle();
    focus(other);
    go(800, 400);
    go(300, 250);
    settle();
    EXPECT_EQ(keyboard_focus(), tl_surface(record(other)));
    EXPECT_FALSE(lock.active());
}

TEST_F(gaming, a_persistent_lock_comes_back_with_the_focus)
{
    window &other = map_other();
    focus(*game);
    locked_pointer lock{*ears, game->get()};
    EVENTUALLY(lock.active());
    focus(other);
    focus(*game);
    EXPECT_TRUE(lock.active());
    EXPECT_EQ(lock.activations(), 2);
}

TEST_F(gaming, a_oneshot_lock_ends_with_the_focus)
{
    window &other = map_other();
    focus(*game);
    locked_pointer lock{*ears, game->get(), constraint_life::once};
    lock.hint(30, 40);
    game->commit();
    EVENTUALLY(lock.active());
    focus(other);
    EXPECT_FALSE(lock.active());
    expect_cursor_at(130, 140);
    EXPECT_EQ(server.active_constraint, nullptr);
    focus(*game);
    EXPECT_EQ(lock.activations(), 1);
}

TEST_F(gaming, one_lock_gives_way_to_that_of_the_window_that_takes_the_focus)
{
    window &other = map_other();
    seat other_ears{other.owner()};
    settle();
    focus(*game);
    locked_pointer first{*ears, game->get()}, second{other_ears, other.get()};
    settle();
    EXPECT_TRUE(first.active());
    EXPECT_FALSE(second.active());
    focus(other);
    EXPECT_FALSE(first.active());
    EXPECT_TRUE(second.active());
}

TEST_F(gaming, an_empty_workspace_frees_the_pointer)
{
    locked_pointer lock{*ears, game->get()};
    EVENTUALLY(lock.active());
    command("workspace 2");
    settle();
    EXPECT_FALSE(lock.active());
}

TEST_F(gaming, a_lock_that_its_client_destroys_leaves_the_cursor_at_the_hint)
{
    locked_pointer lock{*ears, game->get()};
    lock.hint(11, 12);
    game->commit();
    EVENTUALLY(lock.active());
    lock.destroy();
    settle();
    expect_cursor_at(111, 112);
    EXPECT_EQ(server.active_constraint, nullptr);
    pointer->move(1, 1);
    expect_cursor_at(112, 113);
}

TEST_F(gaming, a_hint_that_was_never_committed_does_not_move_the_cursor)
{
    locked_pointer lock{*ears, game->get()};
    lock.hint(11, 12);
    EVENTUALLY(lock.active());
    lock.destroy();
    settle();
    expect_cursor_at(300, 250);
}

TEST_F(gaming, a_hint_outside_of_all_outputs_does_not_move_the_cursor)
{
    locked_pointer lock{*ears, game->get()};
    lock.hint(-5000, 8'000'000);
    game->commit();
    EVENTUALLY(lock.active());
    lock.destroy();
    settle();
    expect_cursor_at(300, 250);
}

TEST_F(gaming, a_lock_of_a_surface_without_a_window_ignores_the_hint)
{
    active_windows = test::activity::may_lag;
    seat bar_ears{game->owner()};
    layer_surface bar{game->owner(), test::top_bar(40)};
    settle();
    locked_pointer lock{bar_ears, bar.get()};
    lock.hint(20, 10);
    bar.keyboard(test::keyboard_wish::on_demand);
    bar.commit();
    EVENTUALLY(lock.active());
    lock.destroy();
    settle();
    EXPECT_EQ(server.active_constraint, nullptr);
    expect_cursor_at(300, 250);
}

TEST_F(gaming, a_panel_that_takes_the_keyboard_unlocks_the_pointer)
{
    active_windows = test::activity::may_lag;
    locked_pointer lock{*ears, game->get()};
    EVENTUALLY(lock.active());
    layer_surface bar{game->owner(), test::top_bar(40)};
    settle();
    EXPECT_TRUE(lock.active());
    bar.keyboard(test::keyboard_wish::exclusive);
    bar.commit();
    settle();
    EXPECT_FALSE(lock.active());
}

TEST_F(gaming, a_lock_stays_in_force_below_what_appears_above_the_pointer)
{
    locked_pointer lock{*ears, game->get()};
    EVENTUALLY(lock.active());
    {
        const layer_surface note{connect(), {.size = {1280, 704}, .anchor = test::TOP}};
        settle();
        EXPECT_TRUE(lock.active());
        EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(*game)));
    }
    settle();
    EXPECT_TRUE(lock.active());
}

TEST_F(gaming, a_lock_that_comes_with_the_keyboard_takes_the_pointer_that_rests_on_its_window)
{
    window &other = map_other();
    place(other, 200, 200); // above the game and under the pointer
    locked_pointer lock{*ears, game->get()};
    settle();
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(other)));
    focus(*game);
    EXPECT_TRUE(lock.active());
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(*game)));
}

TEST_F(gaming, a_window_that_unmaps_lets_go_of_the_pointer)
{
    locked_pointer lock{*ears, game->get()};
    EVENTUALLY(lock.active());
    game->unmap();
    EVENTUALLY(!lock.active());
    pointer->move(5, 5);
    expect_cursor_at(305, 255);
}

TEST_F(gaming, a_window_that_unmaps_ends_a_oneshot_lock)
{
    locked_pointer lock{*ears, game->get(), constraint_life::once};
    EVENTUALLY(lock.active());
    game->unmap();
    EVENTUALLY(!lock.active());
    EXPECT_EQ(server.active_constraint, nullptr);
}

TEST_F(gaming, a_client_that_dies_lets_go_of_the_pointer)
{
    locked_pointer lock{*ears, game->get()};
    lock.hint(11, 12);
    game->commit();
    EVENTUALLY(lock.active());
    game->owner().vanish();
    EVENTUALLY(server.active_constraint == nullptr);
    pointer->move(5, 5);
    expect_cursor_at(305, 255);
}

TEST_F(gaming, a_window_destroyed_before_its_lock_lets_go_of_the_pointer)
{
    locked_pointer lock{*ears, game->get()};
    EVENTUALLY(lock.active());
    game->destroy();
    EVENTUALLY(server.active_constraint == nullptr);
    pointer->move(5, 5);
    expect_cursor_at(305, 255);
}

// Confinements. The region lies well inside the window, away from its borders.

constexpr test::region_box middle{150, 100, 100, 100}; // 250,200 to 350,300 of the layout

TEST_F(gaming, a_confined_pointer_moves_within_its_region_and_can_not_leave_it)
{
    confined_pointer fence{*ears, game->get(), middle};
    EVENTUALLY(fence.active());
    (void)ears->take();
    pointer->move(10, 20);
    expect_cursor_at(310, 270);
    pointer->move(500, 0);
    EXPECT_GE(server.cursor->x, 349);
    EXPECT_LT(server.cursor->x, 350);
    pointer->move(0, -500);
    EXPECT_DOUBLE_EQ(server.cursor->y, 200);
    EXPECT_TRUE(fence.active());
    settle();
    EXPECT_THAT(ears->take(), testing::IsSupersetOf({"motion 210,170", "motion 249,170", "motion 249,100"}));
}

TEST_F(gaming, without_a_region_the_pointer_is_confined_to_the_whole_window_at_once)
{
    confined_pointer fence{*ears, game->get()};
    EVENTUALLY(fence.active());
    pointer->move(-500, 0);
    expect_cursor_at(100, 250);
    pointer->move(500, 500);
    EXPECT_GE(server.cursor->x, 499);
    EXPECT_LT(server.cursor->x, 500);
    EXPECT_LT(server.cursor->y, 400);
    settle();
    EXPECT_TRUE(fence.active());
}

TEST_F(gaming, without_a_region_the_pointer_is_confined_to_what_takes_input)
{
    game->input_region(50, 50, 200, 200);
    game->commit();
    settle();
    confined_pointer fence{*ears, game->get()};
    EVENTUALLY(fence.active());
    pointer->move(-500, 0);
    expect_cursor_at(150, 250);
    game->input_region(20, 50, 200, 200);
    game->commit();
    settle();
    pointer->move(-500, 0);
    expect_cursor_at(120, 250);
}

TEST_F(gaming, a_confined_pointer_slides_along_the_edge_of_the_screen)
{
    place(*game, 1000, 100);
    go(1270, 250);
    confined_pointer fence{*ears, game->get()};
    EVENTUALLY(fence.active());
    pointer->move(50, 20); // the window goes on there, but the screen does not
    EXPECT_GE(server.cursor->x, 1279);
    EXPECT_LT(server.cursor->x, 1280);
    EXPECT_DOUBLE_EQ(server.cursor->y, 270);
}

TEST_F(gaming, a_confinement_outlasts_what_appears_above_a_resting_pointer)
{
    confined_pointer fence{*ears, game->get()};
    EVENTUALLY(fence.active());
    const layer_surface message{connect(), {.on = test::layer::overlay, .size = {1280, 704}, .anchor = 0}};
    settle();
    EXPECT_TRUE(fence.active());
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(*game)));
}

TEST_F(gaming, a_window_that_moves_away_lets_go_of_a_confined_pointer)
{
    confined_pointer fence{*ears, game->get()};
    EVENTUALLY(fence.active());
    window &other = map_other();
    focus(*game);
    place(other, 250, 200);
    place(*game, 700, 300);
    settle();
    EXPECT_EQ(server.seat->pointer_state.focused_surface, tl_surface(record(other)));
}

TEST_F(gaming, a_drag_that_the_client_asks_for_ends_its_confinement)
{
    confined_pointer fence{*ears, game->get()};
    EVENTUALLY(fence.active());
    pointer->press(BTN_LEFT);
    settle();
    game->request_move(ears->get(), ears->press_serial());
    EVENTUALLY(!fence.active());
    pointer->move(600, 0);
    expect_cursor_at(900, 250);
    pointer->release(BTN_LEFT);
    EVENTUALLY(fence.active());
}

TEST_F(gaming, absolute_devices_ignore_a_confinement)
{
    confined_pointer fence{*ears, game->get(), middle};
    EVENTUALLY(fence.active());
    pointer->move_to(0.75, 0.75);
    expect_cursor_at(960, 528);
    settle();
    EXPECT_FALSE(fence.active()) << "the pointer has left the window";
    pointer->move_to(300.0 / 1280, 250.0 / 704);
    EVENTUALLY(fence.active());
}

TEST_F(gaming, a_region_counts_from_the_surface_also_where_the_client_draws_shadows)
{
    game->geometry(26, 20, 300, 200);
    game->fill(0xff00ff00);
    settle();
    place(*game, 100, 100);
    go(250, 230);
    confined_pointer fence{*ears, game->get(), middle};
    EVENTUALLY(fence.active());
    pointer->move(-500, -500);
    expect_cursor_at(74 + middle.x, 80 + middle.y);
}

TEST_F(gaming, a_pointer_outside_of_the_region_is_confined_once_it_is_inside)
{
    go(150, 150);
    confined_pointer fence{*ears, game->get(), middle};
    EVENTUALLY(fence.active());
    pointer->move(10, 0);
    expect_cursor_at(160, 150);
    go(300, 250);
    expect_cursor_at(300, 250);
    pointer->move(500, 0);
    EXPECT_LT(server.cursor->x, 350);
}

TEST_F(gaming, a_confinement_to_a_surface_without_a_window_leaves_the_motion_as_it_is)
{
    active_windows = test::activity::may_lag;
    seat bar_ears{game->owner()};
    layer_surface bar{game->owner(), test::top_bar(40)};
    settle();
    go(600, 20);
    bar.keyboard(test::keyboard_wish::on_demand);
    bar.commit();
    confined_pointer fence{bar_ears, bar.get(), test::region_box{0, 0, 1280, 40}};
    EVENTUALLY(fence.active());
    pointer->move(0, 300);
    expect_cursor_at(600, 320);
}

TEST_F(gaming, a_window_that_changes_hands_ends_a_confinement_where_the_pointer_is)
{
    window &other = map_other();
    focus(*game);
    confined_pointer fence{*ears, game->get(), middle};
    EVENTUALLY(fence.active());
    focus(other);
    EXPECT_FALSE(fence.active());
    expect_cursor_at(300, 250);
}

// The log

TEST_F(gaming, the_log_tells_what_becomes_of_constraints)
{
    window &other = map_other();
    focus(*game);
    {
        confined_pointer fence{*ears, game->get(), middle};
        EVENTUALLY(fence.active());
        EXPECT_THAT(world.log(),
                    HasSubstr("] constraint: new (confined) kb-focus=1 ptr-focus=1 — activating\n"));
        EXPECT_THAT(world.log(), HasSubstr("] constraint: activate (confined) cursor=300,250\n"));
        focus(other);
        EXPECT_THAT(world.log(), EndsWith("] constraint: deactivate (confined)\n"));
    }
    settle();
    EXPECT_THAT(world.log(), EndsWith("] constraint: destroyed (confined, was inactive)\n"));
    locked_pointer lock{*ears, game->get()};
    settle();
    EXPECT_THAT(world.log(), EndsWith("] constraint: new (locked) kb-focus=0 ptr-focus=1\n"));
    focus(*game);
    EXPECT_THAT(world.log(), EndsWith("] constraint: activate (locked) cursor=300,250\n"));
    lock.destroy();
    settle();
    EXPECT_THAT(world.log(), EndsWith("] constraint: destroyed (locked, was ACTIVE)\n"));
}

} // namespace
