// The clients that tests play for globals that the compositor does not offer yet. Each test makes the global
// itself, and shows that the global and the client hear each other.

#include "support/desktop.hpp"
#include "support/more_wlr.hpp"
#include "support/wayland_gestures.hpp"
#include "support/wayland_hints.hpp"
#include "support/wayland_lock.hpp"
#include "support/wayland_tablet.hpp"

#include <linux/input-event-codes.h>

using test::desktop;
using test::pointer_gestures;
using test::seat;
using test::session_lock;
using test::size;
using test::tablet_seat;
using test::window;
using testing::ElementsAre;

namespace
{

// Locks

struct lock_keeper {
    listener new_lock, new_surface, unlock, lock_destroy, surface_destroy;
    wlr_session_lock_v1 *lock = nullptr;
    wlr_session_lock_surface_v1 *surface = nullptr;
    int unlocks = 0;
};

void forget_surface(lock_keeper &keeper)
{
    unlisten(keeper.surface_destroy);
    keeper.surface = nullptr;
}

void take_surface(lock_keeper &keeper, wlr_session_lock_surface_v1 *surface)
{
    keeper.surface = surface;
    listen<&lock_keeper::surface_destroy, forget_surface>(keeper, surface->events.destroy);
}

void count_unlock(lock_keeper &keeper)
{
    keeper.unlocks++;
}

void forget_lock(lock_keeper &keeper)
{
    for (listener *l : {&keeper.new_surface, &keeper.unlock, &keeper.lock_destroy})
        unlisten(*l);
    keeper.lock = nullptr;
}

void take_lock(lock_keeper &keeper, wlr_session_lock_v1 *lock)
{
    keeper.lock = lock;
    listen<&lock_keeper::new_surface, take_surface>(keeper, lock->events.new_surface);
    listen<&lock_keeper::unlock, count_unlock>(keeper, lock->events.unlock);
    listen<&lock_keeper::lock_destroy, forget_lock>(keeper, lock->events.destroy);
}

struct lock_kit : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 640, 384);
        auto *manager = wlr_session_lock_manager_v1_create(server.display);
        listen<&lock_keeper::new_lock, take_lock>(keeper, manager->events.new_lock);
        locker = &connect();
        lock.emplace(*locker);
        EVENTUALLY(keeper.lock != nullptr);
    }
    void TearDown() override
    {
        lock.reset();
        EVENTUALLY(keeper.lock == nullptr && keeper.surface == nullptr);
        unlisten(keeper.new_lock);
        desktop::TearDown();
    }

    lock_keeper keeper;
    test::client *locker = nullptr;
    std::optional<session_lock> lock;
};

TEST_F(lock_kit, covers_an_output_and_is_told_of_lock_and_unlock)
{
    const test::lock_surface &cover = lock->cover("cover", locker->output_named("A"));
    EVENTUALLY(keeper.surface != nullptr);
    EXPECT_EQ(keeper.surface->output, output("A").wlr_output);
    wlr_session_lock_surface_v1_configure(keeper.surface, 640, 384);
    EVENTUALLY_EQ(cover.size(), (size{640, 384}));
    EVENTUALLY(wlr_surface_has_buffer(keeper.surface->surface));
    EXPECT_EQ(keeper.surface->current.width, 640U);
    EXPECT_FALSE(lock->locked());
    wlr_session_lock_v1_send_locked(keeper.lock);
    EVENTUALLY(lock->locked());
    lock->unlock();
    EVENTUALLY_EQ(keeper.unlocks, 1);
}

TEST_F(lock_kit, is_told_that_its_lock_was_refused)
{
    wlr_session_lock_v1_destroy(keeper.lock);
    EVENTUALLY(lock->finished());
    EXPECT_FALSE(lock->locked());
    lock->destroy();
    settle();
    EXPECT_EQ(locker->error(), 0);
}

TEST_F(lock_kit, draws_nothing_by_itself_where_a_test_wants_that)
{
    test::lock_surface &cover = lock->cover("cover", locker->output_named("A"));
    cover.auto_draw = false;
    EVENTUALLY(keeper.surface != nullptr);
    wlr_session_lock_surface_v1_configure(keeper.surface, 640, 384);
    EVENTUALLY_EQ(cover.configures(), 1);
    settle();
    EXPECT_FALSE(wlr_surface_has_buffer(keeper.surface->surface));
    cover.ack();
    cover.draw(cover.size(), 0xff000000);
    EVENTUALLY(wlr_surface_has_buffer(keeper.surface->surface));
}

// Gestures

struct gesture_kit : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 640, 384);
        gestures = wlr_pointer_gestures_v1_create(server.display);
        test::made_up_pointer &pad = plug_pointer("touchpad");
        page = &map("page", {400, 300});
        ears.emplace(page->owner());
        EVENTUALLY(ears->get_pointer() != nullptr);
        kit.emplace(*ears);
        const wlr_box at = box(*page);
        point_at(pad, at.x + 10, at.y + 10);
        settle();
    }
    void TearDown() override
    {
        kit.reset();
        ears.reset();
        desktop::TearDown();
    }

    wlr_pointer_gestures_v1 *gestures = nullptr;
    window *page = nullptr;
    std::optional<seat> ears;
    std::optional<pointer_gestures> kit;
};

TEST_F(gesture_kit, hears_swipes)
{
    wlr_pointer_gestures_v1_send_swipe_begin(gestures, server.seat, 1, 3);
    wlr_pointer_gestures_v1_send_swipe_update(gestures, server.seat, 2, 5, -2);
    wlr_pointer_gestures_v1_send_swipe_end(gestures, server.seat, 3, false);
    EVENTUALLY(kit->heard("swipe end"));
    EXPECT_THAT(kit->take(), ElementsAre("swipe begin page 3", "swipe update 5,-2", "swipe end"));
}

TEST_F(gesture_kit, hears_pinches)
{
    wlr_pointer_gestures_v1_send_pinch_begin(gestures, server.seat, 1, 2);
    wlr_pointer_gestures_v1_send_pinch_update(gestures, server.seat, 2, 1, 0, 1.5, 10);
    wlr_pointer_gestures_v1_send_pinch_end(gestures, server.seat, 3, true);
    EVENTUALLY(kit->heard("pinch cancelled"));
    EXPECT_THAT(kit->take(),
                ElementsAre("pinch begin page 2", "pinch update 1,0 scale 1.5 turned 10", "pinch cancelled"));
}

TEST_F(gesture_kit, hears_holds)
{
    wlr_pointer_gestures_v1_send_hold_begin(gestures, server.seat, 1, 4);
    wlr_pointer_gestures_v1_send_hold_end(gestures, server.seat, 2, false);
    EVENTUALLY(kit->heard("hold end"));
    EXPECT_THAT(kit->take(), ElementsAre("hold begin page 4", "hold end"));
}

// Idle inhibitors

struct inhibitor_watch {
    listener appear, vanish;
    const wlr_surface *surface = nullptr;
};

void inhibitor_vanishes(inhibitor_watch &watch)
{
    unlisten(watch.vanish);
    watch.surface = nullptr;
}

void inhibitor_appears(inhibitor_watch &watch, wlr_idle_inhibitor_v1 *inhibitor)
{
    watch.surface = inhibitor->surface;
    listen<&inhibitor_watch::vanish, inhibitor_vanishes>(watch, inhibitor->events.destroy);
}

TEST_F(desktop, idle_inhibitor_lives_as_long_as_its_client_wants)
{
    plug("A", 640, 384);
    auto *manager = wlr_idle_inhibit_v1_create(server.display);
    inhibitor_watch watch;
    listen<&inhibitor_watch::appear, inhibitor_appears>(watch, manager->events.new_inhibitor);
    const window &player = map("player");
    {
        const test::idle_inhibitor inhibitor{player.owner(), player.get()};
        EVENTUALLY(watch.surface != nullptr);
        EXPECT_EQ(watch.surface, tl_surface(record(player)));
    }
    EVENTUALLY(watch.surface == nullptr);
    unlisten(watch.appear);
}

// Tablets

struct cursor_wish {
    listener asked;
    bool hidden = false;
};

void note_cursor(cursor_wish &wish, wlr_tablet_v2_event_cursor *event)
{
    wish.hidden = event->surface == nullptr;
}

struct tablet_kit : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 640, 384);
        auto *manager = wlr_tablet_v2_create(server.display);
        auto &device = plug_tablet("drawing board");
        tablet = wlr_tablet_create(manager, server.seat, &device.base.base);
        pen = wlr_tablet_tool_create(manager, server.seat, &device.pen);
        canvas = &map("canvas");
        ears.emplace(canvas->owner());
        kit.emplace(*ears);
        EVENTUALLY(kit->heard("pen"));
        EXPECT_THAT(kit->take(), ElementsAre("tablet drawing board", "pen"));
    }
    void TearDown() override
    {
        kit.reset();
        ears.reset();
        desktop::TearDown();
    }

    wlr_tablet_v2_tablet *tablet = nullptr;
    wlr_tablet_v2_tablet_tool *pen = nullptr;
    window *canvas = nullptr;
    std::optional<seat> ears;
    std::optional<tablet_seat> kit;
};

TEST_F(tablet_kit, hears_a_stroke_of_the_pen)
{
    wlr_tablet_v2_tablet_tool_notify_proximity_in(pen, tablet, tl_surface(record(*canvas)));
    wlr_tablet_v2_tablet_tool_notify_motion(pen, 10, 20);
    wlr_tablet_v2_tablet_tool_notify_down(pen);
    wlr_tablet_v2_tablet_tool_notify_pressure(pen, 1);
    wlr_tablet_v2_tablet_tool_notify_tilt(pen, 5, -5);
    wlr_tablet_v2_tablet_tool_notify_button(pen, BTN_STYLUS, ZWP_TABLET_PAD_V2_BUTTON_STATE_PRESSED);
    wlr_tablet_v2_tablet_tool_notify_button(pen, BTN_STYLUS, ZWP_TABLET_PAD_V2_BUTTON_STATE_RELEASED);
    wlr_tablet_v2_tablet_tool_notify_up(pen);
    wlr_tablet_v2_tablet_tool_notify_proximity_out(pen);
    EVENTUALLY(kit->heard("out"));
    EXPECT_THAT(kit->take(), ElementsAre("in canvas", "motion 10,20", "down", "pressure 65535", "tilt 5,-5",
                                         "button down 331", "button up 331", "up", "out"));
}

TEST_F(tablet_kit, asks_for_a_cursor)
{
    cursor_wish wish;
    listen<&cursor_wish::asked, note_cursor>(wish, pen->events.set_cursor);
    wlr_tablet_v2_tablet_tool_notify_proximity_in(pen, tablet, tl_surface(record(*canvas)));
    EVENTUALLY(kit->heard("in canvas"));
    kit->set_cursor(nullptr, 0, 0);
    EVENTUALLY(wish.hidden);
}

} // namespace
