// Decides who gets a button: the lock screen, the overview, a panel, a drag, a title bar, a resize border or
// a client. Each is a stage of the two tables below.

#include "buttons.hpp"

#include "../config/settings.hpp"
#include "../server.hpp"
#include "../windows/layer_keyboard.hpp"
#include "../windows/states.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/focus.hpp"
#include "../workspaces/tiles.hpp"
#include "button_log.hpp"
#include "drag_release.hpp"
#include "hit_test.hpp"
#include "idle.hpp"
#include "interactive.hpp"
#include "modifier_tap.hpp"
#include "overview_input.hpp"
#include "stages.hpp"

#include <linux/input-event-codes.h>

static constexpr uint32_t double_click_ms = 400;

static vantore_toplevel *window_under_cursor(const vantore_server &server)
{
    surface_hit hit;
    return desktop_toplevel_at(server, server.cursor->x, server.cursor->y, hit);
}

static void notify_client(vantore_server &server, const wlr_pointer_button_event &event)
{
    wlr_seat_pointer_notify_button(server.seat, event.time_msec, event.button, event.state);
}

// This means the Logo key itself, whatever the window-manager modifier is.
static bool logo_is_held(const vantore_server &server)
{
    wlr_keyboard *keyboard = wlr_seat_get_keyboard(server.seat);
    return keyboard != nullptr && (wlr_keyboard_get_modifiers(keyboard) & WLR_MODIFIER_LOGO) != 0;
}

// Returns the corner of the window that is nearest to the pointer.
static uint32_t nearest_corner(const vantore_toplevel &t)
{
    const wlr_box box = toplevel_box(t);
    const wlr_cursor &cursor = *t.server->cursor;
    const uint32_t across = cursor.x - box.x < box.width / 2.0 ? WLR_EDGE_LEFT : WLR_EDGE_RIGHT;
    const uint32_t down = cursor.y - box.y < box.height / 2.0 ? WLR_EDGE_TOP : WLR_EDGE_BOTTOM;
    return across | down;
}

static bool press_with_logo(vantore_server &server, const wlr_pointer_button_event &event)
{
    vantore_toplevel *t = logo_is_held(server) ? window_under_cursor(server) : nullptr;
    if (t == nullptr)
        return false;
    focus_toplevel_ex(t, true);
    if (event.button == BTN_RIGHT)
        begin_interactive(*t, VANTORE_CURSOR_RESIZE, nearest_corner(*t));
    else
        begin_interactive(*t, VANTORE_CURSOR_MOVE, 0);
    return true;
}

static bool press_on_tab(vantore_server &server, const wlr_pointer_button_event &event)
{
    vantore_toplevel *t =
        event.button == BTN_LEFT ? tab_at(server, server.cursor->x, server.cursor->y) : nullptr;
    focus_toplevel_ex(t, true);
    return t != nullptr;
}

// The first press of a double click starts a drag too.
static void press_on_title(vantore_toplevel &t, uint32_t time_msec)
{
    vantore_server &server = *t.server;
    if (server.pointing.last_tb_id == t.id && time_msec - server.pointing.last_tb_msec < double_click_ms) {
        toplevel_toggle_maximize(t);
        server.pointing.last_tb_id = 0;
        return;
    }
    server.pointing.last_tb_msec = time_msec;
    server.pointing.last_tb_id = t.id;
    begin_interactive(t, VANTORE_CURSOR_MOVE, 0);
}

static void press_in_region(vantore_toplevel &t, vantore_dec_region region, uint32_t time_msec)
{
    switch (region) {
    case DEC_NONE:
        break;
    case DEC_TITLEBAR:
        press_on_title(t, time_msec);
        break;
    case DEC_CLOSE:
        tl_close(t);
        break;
    case DEC_MINIMIZE:
        toplevel_minimize(t);
        break;
    case DEC_MAXIMIZE:
        toplevel_toggle_maximize(t);
        break;
    case DEC_GRIP:
        begin_interactive(t, VANTORE_CURSOR_RESIZE, WLR_EDGE_BOTTOM | WLR_EDGE_RIGHT);
        break;
    }
}

// All pointer buttons do the same on a title bar.
static bool press_on_decoration(vantore_server &server, const wlr_pointer_button_event &event)
{
    vantore_dec_region region = DEC_NONE;
    vantore_toplevel *t = decoration_at(server, server.cursor->x, server.cursor->y, region);
    if (t == nullptr || region == DEC_NONE)
        return false;
    focus_toplevel_ex(t, true);
    press_in_region(*t, region, event.time_msec);
    return true;
}

static bool press_on_border(vantore_server &server, const wlr_pointer_button_event &event)
{
    vantore_toplevel *t = event.button == BTN_LEFT ? window_under_cursor(server) : nullptr;
    if (t == nullptr)
        return false;
    const uint32_t edges = resize_edges_at(*t, server.cursor->x, server.cursor->y);
    if (edges == WLR_EDGE_NONE)
        return false;
    focus_toplevel_ex(t, true);
    begin_interactive(*t, VANTORE_CURSOR_RESIZE, edges);
    return true;
}

static bool press_on_frame(vantore_server &server, const wlr_pointer_button_event &event)
{
    if (hides_frames(surface_at(server, server.cursor->x, server.cursor->y).surface))
        return false;
    return press_on_tab(server, event) || press_on_decoration(server, event) ||
           press_on_border(server, event);
}

// During a lock, no drag begins or ends.
static bool give_to_lock_screen(vantore_server &server, const wlr_pointer_button_event &event)
{
    if (server.locked)
        notify_client(server, event);
    return server.locked;
}

static bool press_in_overview(vantore_server &server, const wlr_pointer_button_event &event)
{
    if (!server.overview.active)
        return false;
    overview_press(server, event.button);
    return true;
}

static bool release_in_overview(vantore_server &server, const wlr_pointer_button_event &event)
{
    if (!server.overview.active)
        return false;
    if (!overview_release(server))
        notify_client(server, event);
    return true;
}

static bool press_on_layer_surface(vantore_server &server, const wlr_pointer_button_event &event)
{
    wlr_surface *surface = surface_at(server, server.cursor->x, server.cursor->y).surface;
    if (!is_layer(surface))
        return false;
    layer_pressed(surface);
    notify_client(server, event);
    return true;
}

// Focuses the window before the client hears of the press and once more afterwards. Whatever the client does
// in answer, the window under the pointer ends up focused and on top.
static bool press_on_client(vantore_server &server, const wlr_pointer_button_event &event)
{
    focus_toplevel_ex(window_under_cursor(server), true);
    notify_client(server, event);
    focus_toplevel_ex(window_under_cursor(server), true);
    return true;
}

// The client hears of the release first, even at the end of a drag.
static bool release_and_drop(vantore_server &server, const wlr_pointer_button_event &event)
{
    notify_client(server, event);
    finish_drag(server);
    return true;
}

using press_stages = stages<give_to_lock_screen, press_in_overview, press_on_layer_surface, press_with_logo,
                            press_on_frame, press_on_client>;
using release_stages = stages<give_to_lock_screen, release_in_overview, release_and_drop>;

void server_cursor_button(vantore_server &server, wlr_pointer_button_event *event)
{
    idle_poke(server);
    if (g_debug_input)
        log_button(server, *event);
    shortcuts_force_hide(server); // any button ends a pending tap
    if (event->state == WL_POINTER_BUTTON_STATE_RELEASED)
        release_stages::run(server, *event);
    else
        press_stages::run(server, *event);
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
