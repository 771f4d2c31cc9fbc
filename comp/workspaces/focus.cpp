#include "focus.hpp"

#include "../broadcast.hpp"
#include "../input/constraints.hpp"
#include "../input/resting_pointer.hpp"
#include "../presentation/decorations.hpp"
#include "../presentation/effects.hpp"
#include "../server.hpp"
#include "../visibility.hpp"
#include "../windows/fullscreen.hpp"
#include "../windows/popup.hpp"
#include "../windows/showing.hpp"
#include "../windows/stacking.hpp"
#include "../windows/toplevel.hpp"
#include "arrange.hpp"
#include "workspace.hpp"

#include <utility>

vantore_toplevel *focused_toplevel(vantore_server &server)
{
    return each<&vantore_toplevel::link>(server.toplevels).first();
}

vantore_toplevel *action_target(vantore_server &server)
{
    vantore_toplevel *t = focused_toplevel(server);
    return t != nullptr && toplevel_visible(*t) ? t : nullptr;
}

static void raise_to_top(vantore_toplevel &t)
{
    raise_with_dialogs(t);
    move_to_front(t.server->toplevels, t.link);
    refresh_showing(t); // its stack now shows this member
    pointer_look_again(*t.server); // the window may have come up under the pointer
}

// Takes a surface, because its window may be in no list any more. A surface that was unmapped must not get a
// configure before its client commits again, so only the scheduled state changes.
void deactivate_window(wlr_surface *surface)
{
    if (surface == nullptr)
        return;
    if (wlr_xwayland_surface *xwl = wlr_xwayland_surface_try_from_wlr_surface(surface))
        return wlr_xwayland_surface_activate(xwl, false);
    wlr_xdg_toplevel *xdg = wlr_xdg_toplevel_try_from_wlr_surface(surface);
    if (xdg == nullptr || !xdg->scheduled.activated)
        return;
    if (xdg->base->initialized)
        wlr_xdg_toplevel_set_activated(xdg, false);
    else
        xdg->scheduled.activated = false;
}

// The active window need not have the keyboard, because a panel or an X11 menu takes the keyboard without
// deactivating it.
static void deactivate_windows_except(vantore_server &server, const vantore_toplevel *kept)
{
    if (wlr_surface *focused = server.seat->keyboard_state.focused_surface)
        deactivate_window(focused);
    for (const auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (&t != kept)
            deactivate_window(tl_surface(t));
}

bool has_keyboard(const vantore_server &server, const wlr_surface *surface)
{
    return surface != nullptr && server.seat->keyboard_state.focused_surface == surface;
}

using enter_function = void(wlr_seat *, wlr_surface *, const uint32_t *, size_t,
                            const wlr_keyboard_modifiers *);

static void enter_with(enter_function *enter, wlr_seat *seat, wlr_surface *surface)
{
    const wlr_keyboard *keyboard = wlr_seat_get_keyboard(seat);
    if (keyboard != nullptr)
        enter(seat, surface, keyboard->keycodes, keyboard->num_keycodes, &keyboard->modifiers);
    else
        enter(seat, surface, nullptr, 0, nullptr);
}

void keyboard_offer(wlr_seat *seat, wlr_surface *surface)
{
    enter_with(wlr_seat_keyboard_notify_enter, seat, surface);
}

// An open menu or a drag ignores the offer and does not make up for it when it ends, so the focus bypasses
// both.
void keyboard_enter(wlr_seat *seat, wlr_surface *surface)
{
    keyboard_offer(seat, surface);
    if (seat->keyboard_state.focused_surface != surface)
        enter_with(wlr_seat_keyboard_enter, seat, surface);
}

void keyboard_lift_keys(wlr_seat *seat)
{
    wlr_surface *surface = seat->keyboard_state.focused_surface;
    const wlr_keyboard *keyboard = wlr_seat_get_keyboard(seat);
    if (surface == nullptr || keyboard == nullptr)
        return;
    wlr_seat_keyboard_clear_focus(seat);
    wlr_seat_keyboard_enter(seat, surface, nullptr, 0, &keyboard->modifiers);
}

// Restores a minimized window and ends its call for attention. Returns whether it was minimized.
static bool bring_back(vantore_toplevel &t)
{
    vantore_server &server = *t.server;
    if (std::exchange(t.urgent, false))
        ipc_broadcast(server, VNT_EVT_WINDOWS);
    const bool was_minimized = std::exchange(t.minimized, false);
    tl_set_minimized(t, false);
    t.put_away = false;
    refresh_showing(t);
    if (was_minimized) {
        effects_layout(t);
        visible_changed(server);
    }
    return was_minimized;
}

static void hand_keyboard_to(vantore_toplevel &t)
{
    end_menus_of_others(t);
    deactivate_windows_except(*t.server, &t);
    tl_set_activated(t, true);
    t.server->last_focused = t.id;
    keyboard_enter(t.server->seat, tl_surface(t));
    constrain_to_surface(*t.server, tl_surface(t));
}

void focus_toplevel_ex(vantore_toplevel *t, bool raise)
{
    if (t == nullptr || t->server->locked || !tl_mapped(*t))
        return;
    vantore_server &server = *t->server;
    const bool was_minimized = bring_back(*t);
    for (auto &w : each<&vantore_toplevel::link>(server.toplevels))
        dec_set_focused(w, &w == t);
    refresh_fullscreen_stacking(server, *t);
    if (raise)
        raise_to_top(*t);
    if (has_keyboard(server, tl_surface(*t)))
        return tl_ensure_activated(*t);
    hand_keyboard_to(*t);
    if (was_minimized || t->stack_id != 0)
        arrange_workspace(t->workspace); // a tile comes back, or the stack shows another member
    ipc_broadcast(server, VNT_EVT_WINDOWS);
}

void focus_clear(vantore_server &server)
{
    end_menus_of_windows(server); // a menu that nobody sees any more would still take the keys
    deactivate_windows_except(server, nullptr);
    wlr_seat_keyboard_notify_clear_focus(server.seat);
    if (server.seat->keyboard_state.focused_surface != nullptr) // a grab holds it back, as in keyboard_enter
        wlr_seat_keyboard_clear_focus(server.seat);
    constrain_to_surface(server, nullptr);
}

void focus_top_toplevel(vantore_server &server)
{
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels)) {
        if (toplevel_visible(t)) {
            focus_toplevel_ex(&t, false);
            return;
        }
    }
}

void focus_back(vantore_server &server)
{
    vantore_toplevel *t = toplevel_by_id(server, server.last_focused);
    if (t != nullptr && toplevel_visible(*t))
        focus_toplevel_ex(t, false);
    else
        focus_top_toplevel(server);
}

bool focus_is_hidden(vantore_server &server)
{
    const wlr_surface *focused = server.seat->keyboard_state.focused_surface;
    for (const auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (tl_surface(t) == focused && !toplevel_visible(t))
            return true;
    return false;
}

void focus_top_if_hidden(vantore_server &server)
{
    if (focus_is_hidden(server))
        focus_top_toplevel(server);
}
