#include "pointer.hpp"

#include "../clock.hpp"
#include "../config/settings.hpp"
#include "../outputs/mirror.hpp"
#include "../outputs/rehome.hpp"
#include "../presentation/decorations.hpp"
#include "../server.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/focus.hpp"
#include "../workspaces/tiles.hpp"
#include "constraints.hpp"
#include "cursor_image.hpp"
#include "cursor_locate.hpp"
#include "hit_test.hpp"
#include "idle.hpp"
#include "interactive.hpp"
#include "overview_input.hpp"
#include "seat_requests.hpp"
#include "stages.hpp"

#include <utility>

static constexpr double ffm_distance_squared = 64; // 8 pixels

// Tells the client under the pointer how far the device moved, whatever happens to the cursor. Games use
// this.
static void send_relative_motion(vantore_server &server, uint32_t time_msec, double dx, double dy,
                                 double dx_unaccel, double dy_unaccel)
{
    if (server.relative_pointer_mgr != nullptr)
        wlr_relative_pointer_manager_v1_send_relative_motion(server.relative_pointer_mgr, server.seat,
                                                             uint64_t{time_msec} * 1000, dx, dy, dx_unaccel,
                                                             dy_unaccel);
}

void server_cursor_motion(vantore_server &server, wlr_pointer_motion_event *event)
{
    idle_poke(server);
    if (!overlay_lift_active(server))
        send_relative_motion(server, event->time_msec, event->delta_x, event->delta_y, event->unaccel_dx,
                             event->unaccel_dy);
    if (constrain_motion(server, *event))
        return;
    wlr_cursor_move(server.cursor, &event->pointer->base, event->delta_x, event->delta_y);
    cursor_shake_feed(server);
    process_cursor_motion(server, event->time_msec);
}

void server_cursor_motion_absolute(vantore_server &server, wlr_pointer_motion_absolute_event *event)
{
    idle_poke(server);
    double lx = 0, ly = 0;
    wlr_cursor_absolute_to_layout_coords(server.cursor, &event->pointer->base, event->x, event->y, &lx, &ly);
    const double dx = lx - server.cursor->x, dy = ly - server.cursor->y;
    send_relative_motion(server, event->time_msec, dx, dy, dx, dy);
    if (pointer_is_locked(server))
        return;
    wlr_cursor_warp_absolute(server.cursor, &event->pointer->base, event->x, event->y);
    process_cursor_motion(server, event->time_msec);
}

// Remembers the surface's position, so that a press can be followed beyond the surface's edges.
static void deliver(vantore_server &server, uint32_t time_msec, const surface_hit &hit)
{
    server.pointing.ptr_grab_ox = server.cursor->x - hit.sx;
    server.pointing.ptr_grab_oy = server.cursor->y - hit.sy;
    wlr_seat_pointer_notify_motion(server.seat, time_msec, hit.sx, hit.sy);
}

static void enter_and_deliver(vantore_server &server, uint32_t time_msec, const surface_hit &hit)
{
    wlr_seat_pointer_notify_enter(server.seat, hit.surface, hit.sx, hit.sy);
    deliver(server, time_msec, hit);
}

struct motion {
    vantore_server &server;
    uint32_t time_msec;
    bool pointer_rests = false; // the desktop has changed under it
};

// A pointer that nobody has moved yet has no image, and a desktop that changes under it does not give it one.
static void show_image(const motion &m, const char *name)
{
    if (!m.pointer_rests || m.server.cursor_shown.is_chosen)
        show_named_cursor(m.server, name);
}

static bool move_drag_icon(const motion &m)
{
    drag_icon_follow_cursor(m.server);
    return false;
}

// Only what the scene shows can be hit, and during a lock that is the lock screen.
static bool give_to_lock_screen(const motion &m)
{
    vantore_server &server = m.server;
    if (!server.locked)
        return false;
    const surface_hit hit = surface_at(server, server.cursor->x, server.cursor->y);
    show_image(m, "default");
    if (hit.surface == nullptr)
        wlr_seat_pointer_notify_clear_focus(server.seat);
    else
        enter_and_deliver(server, m.time_msec, hit);
    return true;
}

// No client hears of the motion.
static bool give_to_overview(const motion &m)
{
    if (!m.server.overview.active)
        return false;
    if (!m.pointer_rests) // or it would take the selection from the keys
        show_image(m, overview_motion(m.server));
    return true;
}

static bool drag_window(const motion &m)
{
    switch (m.server.drag.cursor_mode) {
    case VANTORE_CURSOR_MOVE:
        process_cursor_move(m.server);
        return true;
    case VANTORE_CURSOR_RESIZE:
        process_cursor_resize(m.server);
        return true;
    case VANTORE_CURSOR_PASSTHROUGH:
        break;
    }
    return false;
}

// A pressed button belongs to the client that got the press, until the release.
static bool has_implicit_grab(wlr_seat *seat)
{
    return seat->pointer_state.button_count > 0 && seat->pointer_state.focused_surface != nullptr &&
           !wlr_seat_pointer_has_grab(seat);
}

static void process_grabbed_motion(vantore_server &server, uint32_t time_msec, const surface_hit &hit)
{
    if (hit.surface == server.seat->pointer_state.focused_surface)
        return deliver(server, time_msec, hit);
    wlr_seat_pointer_notify_motion(server.seat, time_msec, server.cursor->x - server.pointing.ptr_grab_ox,
                                   server.cursor->y - server.pointing.ptr_grab_oy);
}

// A launcher or a menu keeps the keyboard.
static bool keeps_keyboard(wlr_surface *surface)
{
    return is_layer(surface) || is_unmanaged(surface);
}

static bool has_left_anchor(const vantore_server &server)
{
    const double dx = server.cursor->x - server.pointing.ffm_anchor_x,
                 dy = server.cursor->y - server.pointing.ffm_anchor_y;
    return dx * dx + dy * dy >= ffm_distance_squared;
}

static void move_anchor(vantore_server &server)
{
    server.pointing.ffm_anchor_x = server.cursor->x;
    server.pointing.ffm_anchor_y = server.cursor->y;
}

// The anchor keeps a resting pointer from giving the focus to windows that move under it.
static void follow_mouse(const motion &m, vantore_toplevel &t)
{
    vantore_server &server = m.server;
    if (!g_focus_follows_mouse || wlr_seat_pointer_has_grab(server.seat))
        return;
    const bool is_another = std::exchange(server.pointing.ffm_window_id, t.id) != t.id;
    if (m.pointer_rests && is_another)
        move_anchor(server);
    if (m.pointer_rests)
        return;
    wlr_surface *focused = server.seat->keyboard_state.focused_surface, *surface = tl_surface(t);
    if (has_constraint(server, surface) || keeps_keyboard(focused) || focused == surface)
        return move_anchor(server);
    if (!has_left_anchor(server))
        return;
    move_anchor(server);
    focus_toplevel_ex(&t, false);
}

// Goes through the seat's grab, because otherwise the target of a drag and drop would not hear that the
// pointer left.
void clear_pointer_focus(vantore_server &server)
{
    wlr_seat_pointer_notify_clear_focus(server.seat);
    constrain_to_surface(server, nullptr);
}

// A constraint needs the pointer and the keyboard on its surface.
static void enter_with_constraint(vantore_server &server, uint32_t time_msec, const surface_hit &hit)
{
    enter_and_deliver(server, time_msec, hit);
    const bool has_keyboard = hit.surface == server.seat->keyboard_state.focused_surface;
    constrain_to_surface(server, has_keyboard ? hit.surface : nullptr);
}

// The border belongs to the compositor, although its pixels belong to the client.
static bool enter_resize_border(const motion &m, const vantore_toplevel &t)
{
    vantore_server &server = m.server;
    const uint32_t edges = resize_edges_at(t, server.cursor->x, server.cursor->y);
    if (edges == WLR_EDGE_NONE)
        return false;
    show_image(m, resize_cursor_name(edges));
    clear_pointer_focus(server);
    return true;
}

void pointer_leaves_decorations(vantore_server &server)
{
    if (vantore_toplevel *t = std::exchange(server.pointing.hovered_toplevel, nullptr))
        dec_hover_set(*t, DEC_NONE);
}

void hover_window_leaves(vantore_server &server, const vantore_toplevel &t)
{
    if (&t == server.pointing.hovered_toplevel)
        pointer_leaves_decorations(server);
}

static void hover_decorations(vantore_server &server, const surface_hit &hit)
{
    const vantore_dec_region region = dec_region_of(hit, server.cursor->x, server.cursor->y);
    vantore_toplevel *hovered = region != DEC_NONE ? hit.frame : nullptr;
    if (hovered != server.pointing.hovered_toplevel)
        pointer_leaves_decorations(server);
    server.pointing.hovered_toplevel = hovered;
    if (hovered != nullptr)
        dec_hover_set(*hovered, region);
}

// Searches the overlay layer, because lifted windows hang there and it holds only a few surfaces.
bool overlay_lift_active(const vantore_server &server)
{
    const wl_list &overlays = server.layers[ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY]->children;
    for (const wlr_scene_node &node : each<&wlr_scene_node::link>(overlays))
        if (const vantore_toplevel *t = toplevel_of(node); t != nullptr && tl_mapped(*t))
            return true;
    return false;
}

static bool is_behind_overlay(const vantore_server &server, const vantore_toplevel *t)
{
    return t != nullptr && t->fullscreen && !t->overlay_lift && overlay_lift_active(server);
}

// Handles borders and title bars before the client. Returns true when the client gets nothing.
static bool pass_frames(const motion &m, vantore_toplevel *t, const surface_hit &hit)
{
    vantore_server &server = m.server;
    if (hit.surface == nullptr)
        show_image(m, "default");
    if (t == nullptr) {
        server.pointing.ffm_window_id = 0;
    } else {
        follow_mouse(m, *t);
        if (!hides_frames(hit.surface) && enter_resize_border(m, *t))
            return true;
    }
    hover_decorations(server, hit);
    return false;
}

static bool give_to_client(const motion &m)
{
    vantore_server &server = m.server;
    surface_hit hit;
    vantore_toplevel *t = desktop_toplevel_at(server, server.cursor->x, server.cursor->y, hit);
    if (has_implicit_grab(server.seat)) {
        process_grabbed_motion(server, m.time_msec, hit);
    } else if (!pass_frames(m, t, hit)) {
        if (hit.surface == nullptr || is_behind_overlay(server, t))
            clear_pointer_focus(server);
        else
            enter_with_constraint(server, m.time_msec, hit);
    }
    return true;
}

using motion_stages =
    stages<move_drag_icon, give_to_lock_screen, give_to_overview, drag_window, give_to_client>;

void process_cursor_motion(vantore_server &server, uint32_t time_msec)
{
    clamp_cursor_off_mirror(server);
    mirror_follow_pointer(server);
    const motion m{.server = server, .time_msec = time_msec};
    motion_stages::run(m);
}

// A constrained pointer belongs to its client, whatever comes to lie above it. It still has to reach a window
// that got the constraint together with the keyboard.
static bool is_constrained_elsewhere(vantore_server &server)
{
    return constraint_holds_pointer(server) &&
           surface_at(server, server.cursor->x, server.cursor->y).surface !=
               server.active_constraint->surface;
}

void process_resting_pointer(vantore_server &server)
{
    if (is_constrained_elsewhere(server))
        return;
    const auto &state = server.seat->pointer_state;
    const double sx = state.sx, sy = state.sy;
    const motion m{.server = server, .time_msec = uint32_t(mono_ms()), .pointer_rests = true};
    motion_stages::run(m);
    if (state.sx != sx || state.sy != sy)
        wlr_seat_pointer_notify_frame(server.seat); // no device sends one
}
