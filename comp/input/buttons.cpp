#include "buttons.hpp"

#include "../server.hpp"
#include "../workspaces/focus.hpp"
#include "hit_test.hpp"
#include "idle.hpp"
#include "modifier_tap.hpp"

static void focus_under_cursor(vantore_server &server)
{
    surface_hit hit;
    focus_toplevel_ex(desktop_toplevel_at(server, server.cursor->x, server.cursor->y, hit), true);
}

static void notify_client(vantore_server &server, const wlr_pointer_button_event &event)
{
    wlr_seat_pointer_notify_button(server.seat, event.time_msec, event.button, event.state);
}

// Focused before the client hears of the press and once more after: whatever the client does on it, a press
// leaves the window under the pointer focused and on top.
static void press(vantore_server &server, const wlr_pointer_button_event &event)
{
    if (grabbing_layer_at(server, server.cursor->x, server.cursor->y))
        return notify_client(server, event);
    focus_under_cursor(server);
    notify_client(server, event);
    focus_under_cursor(server);
}

void server_cursor_button(vantore_server &server, wlr_pointer_button_event *event)
{
    idle_poke(server);
    shortcuts_force_hide(server); // any button ends a pending tap
    if (!server.locked && event->state != WL_POINTER_BUTTON_STATE_RELEASED)
        press(server, *event);
    else
        notify_client(server, *event);
}

void server_cursor_axis(vantore_server &server, wlr_pointer_axis_event *event)
{
    idle_poke(server);
    wlr_seat_pointer_notify_axis(server.seat, event->time_msec, event->orientation, event->delta,
                                 event->delta_discrete, event->source, event->relative_direction);
}

void server_cursor_frame(vantore_server &server)
{
    wlr_seat_pointer_notify_frame(server.seat);
}
