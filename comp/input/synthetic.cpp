#include "synthetic.hpp"

#include "../clock.hpp"
#include "../server.hpp"
#include "../windows/layer_keyboard.hpp"
#include "../workspaces/focus.hpp"
#include "hit_test.hpp"
#include "pointer.hpp"
#include "resting_pointer.hpp"

static uint32_t now_msec()
{
    return uint32_t(mono_ms());
}

void synthetic_motion(vantore_server &server, double lx, double ly)
{
    wlr_cursor_warp_closest(server.cursor, nullptr, lx, ly);
    process_cursor_motion(server, now_msec());
}

void synthetic_button(vantore_server &server, uint32_t button, bool pressed)
{
    surface_hit hit;
    if (pressed) {
        focus_toplevel_ex(desktop_toplevel_at(server, server.cursor->x, server.cursor->y, hit), true);
        if (is_layer(hit.surface))
            layer_pressed(hit.surface);
    }
    wlr_seat_pointer_notify_button(server.seat, now_msec(), button,
                                   pressed ? WL_POINTER_BUTTON_STATE_PRESSED
                                           : WL_POINTER_BUTTON_STATE_RELEASED);
    wlr_seat_pointer_notify_frame(server.seat);
    pointer_look_again(server);
}
