// One session in this process, for callgrind: it counts the instructions between the two marks. What
// happens there comes from the environment: VANTORE_TEST_WINDOWS, VANTORE_TEST_EVENTS, and
// VANTORE_TEST_KIND, "key" or "motion".

#include "support/desktop.hpp"
#include "support/wayland_seat.hpp"

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
    // The window that hears of it lies lowest, and none of the others covers it.
    void map_windows(int count)
    {
        test::client &c = connect();
        for (int i = 0; i < count; i++) {
            test::window &w = c.create_window("window");
            w.preferred = {320, 200};
            map(w);
            place(w, i == 0 ? 0 : 400 + i * 3, i);
        }
        focused = &c;
    }

    template <class Act> void between_marks(int events, Act act)
    {
        settle();
        (void)pixel("A", 0, 0); // waits for the software driver's threads, which would be counted too
        CALLGRIND_START_INSTRUMENTATION;
        for (int i = 0; i < events; i++) {
            act(i);
            wl_display_flush_clients(server.display);
        }
        CALLGRIND_STOP_INSTRUMENTATION;
        settle();
    }

    test::client *focused = nullptr;
};

TEST_F(input_marks, run)
{
    plug("A", 1920, 1088);
    auto &keyboard = plug_keyboard();
    auto &pointer = plug_pointer();
    map_windows(number("VANTORE_TEST_WINDOWS"));
    const test::seat ears{*focused};
    settle();
    point_at(pointer, 50, 50);
    const int events = number("VANTORE_TEST_EVENTS");
    if (std::string_view{wish("VANTORE_TEST_KIND")} == "key")
        between_marks(events, [&](int i) { i % 2 == 0 ? keyboard.press(KEY_A) : keyboard.release(KEY_A); });
    else
        between_marks(events, [&](int i) { pointer.move(i % 2 == 0 ? 1 : -1, 0); });
}
