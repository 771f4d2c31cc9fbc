// A session for dragging windows: a window with a title bar, a pointer and a keyboard.
#pragma once

#include "desktop.hpp"

#include "config/settings.hpp"
#include "presentation/decorations.hpp"

#include <linux/input-event-codes.h>

namespace test
{

// The window is 400x300 with a title bar, and its content lies at 200,200 on an output of 1280x704. The Mouse
// Tiler is off.
struct drags : desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        pointer = &plug_pointer();
        keyboard = &plug_keyboard();
        g_tiler = false;
        g_gap = 0;
        w = &map_with_bar("w", {400, 300});
        place(*w, 200, 200);
        settle();
        (void)heard();
    }
    window &map_with_bar(const std::string &app, size content)
    {
        window &made = map(app, content);
        record(made).ssd = true;
        dec_layout(record(made));
        return made;
    }
    void go(double lx, double ly) { point_at(*pointer, lx, ly); }
    // Presses a button. The press never counts as the second one of a double click.
    void press_at(double lx, double ly, uint32_t button = BTN_LEFT)
    {
        server.pointing.last_tb_id = 0;
        go(lx, ly);
        pointer->press(button);
    }
    void drop_at(double lx, double ly, uint32_t button = BTN_LEFT)
    {
        go(lx, ly);
        pointer->release(button);
        EXPECT_THAT(server_check(server), testing::IsEmpty());
    }
    void drag(double from_x, double from_y, double to_x, double to_y)
    {
        press_at(from_x, from_y);
        drop_at(to_x, to_y);
    }
    vantore_toplevel &t() { return record(*w); }
    bool shows(wlr_scene_rect *rect) { return rect->node.enabled; }

    made_up_pointer *pointer = nullptr;
    made_up_keyboard *keyboard = nullptr;
    window *w = nullptr;
};

} // namespace test
