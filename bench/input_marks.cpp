// Runs one session in this process for callgrind, which counts the instructions between two marks. The
// environment decides what happens between them: VANTORE_TEST_WINDOWS, VANTORE_TEST_EVENTS, and
// VANTORE_TEST_KIND, which names a row of `kinds`.

#include "support/desktop.hpp"
#include "support/wayland_popup.hpp"
#include "support/wayland_seat.hpp"

#include "config/settings.hpp"
#include "input/mouse_tiler.hpp"

#include <linux/input-event-codes.h>
#include <valgrind/callgrind.h>

static const char *wish(const char *name)
{
    const char *text = getenv(name);
    return text != nullptr ? text : "";
}

static int number(const char *name)
{
    return std::max(1, atoi(wish(name)));
}

struct input_marks : test::desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1920, 1088);
        keyboard = &plug_keyboard();
        pointer = &plug_pointer();
        map_windows(number("VANTORE_TEST_WINDOWS"));
        ears = std::make_unique<test::seat>(*owner);
        settle();
    }
    void TearDown() override
    {
        ears.reset();
        bars.clear();
        desktop::TearDown();
    }

    // The compositor draws the title bars of all windows. The window that receives the events lies lowest,
    // its content is at 0,40, and none of the others covers it.
    void map_windows(int count)
    {
        owner = &connect();
        for (int i = 0; i < count; i++) {
            test::window &w = owner->create_window("window");
            w.title("A window with a title of ordinary length");
            bars.emplace_back(w);
            w.preferred = {320, 200};
            map(w);
            ASSERT_TRUE(record(w).ssd);
            place(w, i == 0 ? 0 : 400 + i * 3, 40 + i);
        }
    }

    // Idle work, such as telling a client its new size, counts as part of the event. Painting does not.
    template <class Act> void between_marks(Act act)
    {
        const int events = number("VANTORE_TEST_EVENTS");
        settle();
        (void)pixel("A", 0, 0); // waits for the software driver's threads, which would otherwise be counted
        wlr_output *shown = output("A").wlr_output;
        shown->frame_pending = true;
        CALLGRIND_START_INSTRUMENTATION;
        for (int i = 0; i < events; i++) {
            act(i);
            wl_event_loop_dispatch_idle(wl_display_get_event_loop(server.display));
            wl_display_flush_clients(server.display);
        }
        CALLGRIND_STOP_INSTRUMENTATION;
        shown->frame_pending = false;
        wlr_output_schedule_frame(shown);
        settle();
    }
    void sway()
    {
        between_marks([&](int i) { pointer->move(i % 2 == 0 ? 1 : -1, 0); });
    }

    void key()
    {
        between_marks([&](int i) { i % 2 == 0 ? keyboard->press(KEY_A) : keyboard->release(KEY_A); });
    }
    void motion()
    {
        point_at(*pointer, 50, 90);
        sway();
    }
    void title_motion()
    {
        point_at(*pointer, 50, 20);
        sway();
    }
    void move()
    {
        point_at(*pointer, 50, 20);
        pointer->press(BTN_LEFT);
        point_at(*pointer, 70, 20);
        ASSERT_FALSE(server.tiler.mt_visible); // the drag has not gone far enough
        sway();
        pointer->release(BTN_LEFT);
    }
    void tiler_move()
    {
        g_tiler = true;
        point_at(*pointer, 50, 20);
        pointer->press(BTN_LEFT);
        point_at(*pointer, 50, 120);
        ASSERT_TRUE(server.tiler.mt_visible);
        sway();
        pointer->release(BTN_LEFT);
    }
    void resize()
    {
        point_at(*pointer, 317, 150);
        pointer->press(BTN_LEFT);
        ASSERT_EQ(server.drag.cursor_mode, VANTORE_CURSOR_RESIZE);
        sway();
        pointer->release(BTN_LEFT);
    }
    void tiler_draw()
    {
        between_marks([&](int) { mt_show(server); });
        mt_hide(server);
    }

    test::made_up_keyboard *keyboard = nullptr;
    test::made_up_pointer *pointer = nullptr;
    test::client *owner = nullptr;
    std::unique_ptr<test::seat> ears;
    std::list<test::decoration> bars;
};

struct kind {
    std::string_view name;
    void (input_marks::*run)();
};

static constexpr kind kinds[]{
    {"key", &input_marks::key},
    {"motion", &input_marks::motion},
    {"title-motion", &input_marks::title_motion},
    {"move", &input_marks::move},
    {"tiler-move", &input_marks::tiler_move},
    {"resize", &input_marks::resize},
    {"tiler-draw", &input_marks::tiler_draw},
};

TEST_F(input_marks, run)
{
    const auto *found = std::ranges::find(kinds, std::string_view{wish("VANTORE_TEST_KIND")}, &kind::name);
    ASSERT_NE(found, std::end(kinds));
    (this->*found->run)();
}
