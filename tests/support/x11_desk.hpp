// A session with one output and a pointer, for tests of X11 windows.
#pragma once

#include "desktop.hpp"

#include "config/settings.hpp"

namespace test
{

struct x11_desk : desktop {
    void SetUp() override
    {
        desktop::SetUp();
        plug("A", 1280, 704);
        pointer = &plug_pointer();
        g_tiler = false;
        g_gap = 0;
        settle();
        (void)heard();
    }
    x11_place place_of(const x11_window &w)
    {
        const wlr_box at = box(w);
        return {at.x, at.y, at.width, at.height};
    }
    void tile() { workspace(1).layout = VANTORE_LAYOUT_TILING; }
    void clear_focus()
    {
        wlr_seat_keyboard_clear_focus(server.seat);
        (void)heard();
    }

    made_up_pointer *pointer = nullptr;
};

} // namespace test
