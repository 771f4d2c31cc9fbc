// An X11 client may request anything at any time. Requests of a window that is not mapped are ignored, except
// those for its size and place.

#include "xwl_requests.hpp"

#include "../broadcast.hpp"
#include "../input/interactive.hpp"
#include "../presentation/decorations.hpp"
#include "../server.hpp"
#include "../workspaces/focus.hpp"
#include "../workspaces/stacks.hpp"
#include "../workspaces/tiles.hpp"
#include "../workspaces/workspace.hpp"
#include "attention.hpp"
#include "fullscreen.hpp"
#include "stacking.hpp"
#include "states.hpp"
#include "toplevel.hpp"
#include "unmanaged.hpp"

static constexpr int32_t urgency_hint = 0x100;

static bool holds_tile(const vantore_toplevel &t)
{
    return toplevel_is_tiled(t) && !t.fullscreen;
}

// A tile whose workspace is on no output may never have been arranged. It keeps the size that it has.
static void refuse_configure(vantore_toplevel &t)
{
    const bool arranged = t.want_w > 0 && t.want_h > 0;
    tl_set_size(t, arranged ? t.want_w : t.xwl->width, arranged ? t.want_h : t.xwl->height);
}

static void xwl_handle_request_configure(vantore_toplevel &t, wlr_xwayland_surface_configure_event *event)
{
    const bool shown = t.scene_tree != nullptr;
    if (shown && holds_tile(t))
        return refuse_configure(t);
    wlr_xwayland_surface_configure(t.xwl, event->x, event->y, event->width, event->height);
    if (!shown)
        return;
    tl_follow_x11(t);
}

// Runs whether the client or the compositor moved the window.
static void xwl_handle_set_geometry(vantore_toplevel &t)
{
    if (t.scene_tree == nullptr)
        return;
    if (toplevel_is_tiled(t) || t.fullscreen || &t == t.server->drag.grabbed_toplevel)
        dec_layout(t);
    else
        tl_follow_x11(t);
}

// No serial proves that the user asked for the drag, but the user can at least see the window.
static bool may_drag(const vantore_toplevel &t)
{
    return t.scene_tree != nullptr && !t.fullscreen && !t.minimized && toplevel_visible(t) && tl_on_screen(t);
}

static void xwl_handle_request_move(vantore_toplevel &t)
{
    if (may_drag(t))
        begin_requested_drag(t, VANTORE_CURSOR_MOVE, 0);
}

static void xwl_handle_request_resize(vantore_toplevel &t, wlr_xwayland_resize_event *event)
{
    if (may_drag(t))
        begin_requested_drag(t, VANTORE_CURSOR_RESIZE, event->edges);
}

static void xwl_handle_request_maximize(vantore_toplevel &t)
{
    if (t.scene_tree == nullptr || t.maximized == t.xwl->maximized_vert)
        return;
    toplevel_toggle_maximize(t);
    tl_set_maximized(t, t.maximized); // tells the client if the change was refused
}

static void xwl_handle_request_minimize(vantore_toplevel &t, wlr_xwayland_minimize_event *event)
{
    if (t.scene_tree == nullptr || t.minimized == event->minimize)
        return;
    if (event->minimize) {
        toplevel_minimize(t);
        ipc_broadcast(*t.server, VNT_EVT_WINDOWS);
    } else {
        focus_toplevel_ex(&t, true);
    }
}

// The window would return to a size that fills the output as well. A game that toggles the state keeps its
// place.
static bool has_nothing_to_gain_from_leaving(const vantore_toplevel &t)
{
    return t.fullscreen && covers_output(t) && fills_output(t, t.saved_geo);
}

static void xwl_handle_request_fullscreen(vantore_toplevel &t)
{
    if (t.scene_tree == nullptr)
        return;
    if (t.xwl->fullscreen)
        toplevel_set_fullscreen(t, true);
    else if (!has_nothing_to_gain_from_leaving(t))
        toplevel_set_fullscreen(t, false);
}

bool any_screen_owner(vantore_server &server)
{
    return shown_fullscreen_window(server) != nullptr || any_unmanaged_covers_output(server);
}

// If nobody has the keyboard, a window in the background may take it, except from a game that has lost it for
// a moment.
static bool may_take_focus(const vantore_toplevel &t)
{
    vantore_server &server = *t.server;
    if (!toplevel_visible(t))
        return false;
    if (const wlr_surface *focused = server.seat->keyboard_state.focused_surface)
        return focused == tl_surface(t);
    return t.fullscreen || !any_screen_owner(server);
}

static void xwl_handle_request_activate(vantore_toplevel &t)
{
    if (t.scene_tree == nullptr)
        return;
    if (may_take_focus(t))
        return focus_toplevel_ex(&t, true);
    toplevel_set_urgent(t); // even a hidden window that still has the keyboard
}

static void xwl_handle_set_hints(vantore_toplevel &t)
{
    if (t.scene_tree != nullptr && t.xwl->hints != nullptr && (t.xwl->hints->flags & urgency_hint) != 0)
        toplevel_mark_urgent(t);
}

static void xwl_handle_set_title(vantore_toplevel &t)
{
    if (t.scene_tree == nullptr)
        return;
    dec_refresh_title(t);
    stack_refresh_tabs(t);
}

static void xwl_handle_set_class(vantore_toplevel &t)
{
    if (t.scene_tree == nullptr)
        return;
    stack_refresh_tabs(t); // a tab without a title shows the class
    ipc_broadcast(*t.server, VNT_EVT_WINDOWS);
}

void xwl_listen_to_requests(vantore_toplevel &t)
{
    auto &events = t.xwl->events;
    listen<&vantore_toplevel::xwl_configure, xwl_handle_request_configure>(t, events.request_configure);
    listen<&vantore_toplevel::xwl_activate, xwl_handle_request_activate>(t, events.request_activate);
    listen<&vantore_toplevel::xwl_geometry, xwl_handle_set_geometry>(t, events.set_geometry);
    listen<&vantore_toplevel::xwl_hints, xwl_handle_set_hints>(t, events.set_hints);
    listen<&vantore_toplevel::request_move, xwl_handle_request_move>(t, events.request_move);
    listen<&vantore_toplevel::request_resize, xwl_handle_request_resize>(t, events.request_resize);
    listen<&vantore_toplevel::request_maximize, xwl_handle_request_maximize>(t, events.request_maximize);
    listen<&vantore_toplevel::request_minimize, xwl_handle_request_minimize>(t, events.request_minimize);
    listen<&vantore_toplevel::request_fullscreen, xwl_handle_request_fullscreen>(t,
                                                                                 events.request_fullscreen);
    listen<&vantore_toplevel::set_title, xwl_handle_set_title>(t, events.set_title);
    listen<&vantore_toplevel::set_app_id, xwl_handle_set_class>(t, events.set_class);
    listen<&vantore_toplevel::set_parent, dialog_parent_changed>(t, events.set_parent);
}
