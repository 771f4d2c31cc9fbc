// The life of an xdg-shell window.
//
// Created: the record exists, and its scene tree hangs disabled under toplevel_tree. Mapped: the tree is
// enabled, and the window is in server.toplevels and on a workspace. Unmapped: the tree is disabled, and the
// window is out of server.toplevels and still on its workspace. The steps of each handler rely on their
// order.

#include "xdg.hpp"

#include "../broadcast.hpp"
#include "../input/interactive.hpp"
#include "../input/modes.hpp"
#include "../memory_trim.hpp"
#include "../outputs/lookup.hpp"
#include "../presentation/decorations.hpp"
#include "../presentation/open_fade.hpp"
#include "../server.hpp"
#include "../workspaces/arrange.hpp"
#include "../workspaces/stacks.hpp"
#include "../workspaces/tiles.hpp"
#include "../workspaces/workspace.hpp"
#include "app_rules.hpp"
#include "decoration_mode.hpp"
#include "fullscreen.hpp"
#include "mapping.hpp"
#include "responsiveness.hpp"
#include "showing.hpp"
#include "stacking.hpp"
#include "states.hpp"
#include "toplevel.hpp"

#include <cstring>

// The clipboard picker must stay above fullscreen windows, even on a system without a rules file.
static constexpr const char *lifted_app_id = "vantore-clips-overlay";

// A window that is mapped again is still fullscreen or maximized if it was so before.
static void send_first_size(vantore_toplevel &t)
{
    wlr_xdg_toplevel *xdg = t.xdg_toplevel;
    const wlr_box usable = usable_at_cursor(*t.server);
    const bool maximized = xdg->requested.maximized || t.maximized;
    const vantore_output *o = output_showing(t);
    if (t.fullscreen && o != nullptr) {
        const wlr_box screen = output_layout_box(*o);
        wlr_xdg_toplevel_set_fullscreen(xdg, true);
        wlr_xdg_toplevel_set_size(xdg, screen.width, screen.height);
    } else if (maximized && usable.width > 0) {
        wlr_xdg_toplevel_set_maximized(xdg, true);
        wlr_xdg_toplevel_set_size(xdg, usable.width, usable.height);
    } else {
        wlr_xdg_toplevel_set_size(xdg, 0, 0); // the client chooses
    }
}

static void answer_initial_commit(vantore_toplevel &t)
{
    send_first_size(t);
    deco_answer_initial_commit(t);
}

// A tile that took another size is asked once more for its own. It is not asked again while it keeps
// committing the same size, because a client with a minimum size would never stop answering.
static void hold_tile_size(vantore_toplevel &t)
{
    const wlr_box geometry = tl_get_geometry(t);
    const bool as_before = geometry.width == t.last_w && geometry.height == t.last_h;
    const bool off_target = geometry.width != t.want_w || geometry.height != t.want_h;
    t.last_w = geometry.width;
    t.last_h = geometry.height;
    const bool dragged = &t == t.server->drag.grabbed_toplevel;
    if (t.want_w > 0 && off_target && !as_before && !dragged && tile_participates(t))
        tl_set_size(t, t.want_w, t.want_h);
}

static void xdg_toplevel_commit(vantore_toplevel &t)
{
    tl_note_sign_of_life(t);
    const wlr_xdg_surface *base = t.xdg_toplevel->base;
    if (base->initialized && base->initial_commit)
        answer_initial_commit(t);
    hold_resize_anchor(t);
    hold_tile_size(t);
    dec_layout(t);
    anim_open_hold(t);
    enforce_fullscreen_pos(t);
}

static bool has_fixed_size(const wlr_xdg_toplevel_state &state)
{
    return state.min_width >= 1 && state.min_width == state.max_width && state.min_height >= 1 &&
           state.min_height == state.max_height;
}

static void take_requested_state(vantore_toplevel &t)
{
    const auto &requested = t.xdg_toplevel->requested;
    if (requested.fullscreen)
        toplevel_set_fullscreen(t, true);
    if (t.fullscreen) {
        wlr_xdg_toplevel_set_maximized(t.xdg_toplevel, t.maximized); // it may have been told otherwise
    } else if (t.maximized) { // in an earlier map
        if (const wlr_box usable = usable_at_cursor(*t.server); usable.width > 0)
            toplevel_fill(t, usable);
    } else if (requested.maximized) {
        toplevel_toggle_maximize(t);
        // The client's first size is the maximized one, so it is no size to return to.
        t.saved_geo = default_float_box(t);
    }
}

static void xdg_toplevel_map(vantore_toplevel &t)
{
    vantore_server &server = *t.server;
    wl_list_insert(&server.toplevels, &t.link);
    if (const char *app_id = tl_app_id(t); app_id != nullptr && strcmp(app_id, lifted_app_id) == 0)
        t.overlay_lift = t.floating = t.skip_taskbar = true;
    t.minimized = t.put_away = t.snapped = false; // they belong to an earlier map
    vantore_workspace *previous = t.workspace; // from an earlier map, or null
    toplevel_set_workspace(t, workspace_for_new_window(server));
    refresh_showing(t);
    if (previous != t.workspace)
        arrange_workspace(previous);
    const wlr_xdg_toplevel *xdg = t.xdg_toplevel;
    if (xdg->parent != nullptr || has_fixed_size(xdg->current))
        t.floating = true;
    config_apply_rules(t); // after the lines that set floating, to override them
    settle_fullscreen(t);
    dec_recolor(t, false); // a reload leaves out windows that are not mapped
    center_toplevel(t);
    place_toplevel_rule(t);
    arrange_workspace(t.workspace);
    focus_new_window(t);
    take_requested_state(t);
    if (toplevel_visible(t))
        anim_open_start(t);
}

// The window stays on its workspace, because the client may map it again.
static void xdg_toplevel_unmap(vantore_toplevel &t)
{
    window_leaves(t);
    leave_shown_windows(t);
    refresh_showing(t); // the scene removes the surface, but not the title bar
    if (t.stack_id != 0)
        arrange_workspace(t.workspace); // another tab shows, and the tabs are drawn anew
    ipc_broadcast(*t.server, VNT_EVT_WINDOWS);
    refocus_after_unmap(t);
    window_left(*t.server);
}

static void xdg_toplevel_destroy(vantore_toplevel &t)
{
    vantore_server &server = *t.server;
    vantore_workspace *ws = t.workspace;
    wl_signal_emit_mutable(&server.window_ends, &t);
    deco_forget_window(t);
    // The xdg_surface may outlive this window and get another role object. The scene would keep the tree as
    // long as the xdg_surface lives.
    t.xdg_toplevel->base->data = nullptr;
    wlr_scene_node_destroy(&t.scene_tree->node);
    delete &t;
    arrange_workspace(ws);
    memory_note_window_gone(server);
}

// The protocol demands a configure in answer to a state request, even when nothing changes.
static void request_maximize(vantore_toplevel &t)
{
    wlr_xdg_toplevel *xdg = t.xdg_toplevel;
    if (!xdg->base->initialized)
        return;
    if (t.maximized != xdg->requested.maximized)
        toplevel_toggle_maximize(t);
    wlr_xdg_toplevel_set_maximized(xdg, t.maximized);
    wlr_xdg_surface_schedule_configure(xdg->base);
}

static bool may_drag(const vantore_toplevel &t, uint32_t serial)
{
    return tl_mapped(t) && wlr_seat_validate_pointer_grab_serial(t.server->seat, nullptr, serial);
}

static void request_move(vantore_toplevel &t, wlr_xdg_toplevel_move_event *event)
{
    if (may_drag(t, event->serial))
        begin_requested_drag(t, VANTORE_CURSOR_MOVE, 0);
}

static void request_resize(vantore_toplevel &t, wlr_xdg_toplevel_resize_event *event)
{
    if (may_drag(t, event->serial))
        begin_requested_drag(t, VANTORE_CURSOR_RESIZE, event->edges);
}

static void request_minimize(vantore_toplevel &t)
{
    if (!t.xdg_toplevel->base->initialized || t.minimized)
        return;
    toplevel_minimize(t);
    ipc_broadcast(*t.server, VNT_EVT_WINDOWS);
}

static void request_fullscreen(vantore_toplevel &t)
{
    wlr_xdg_toplevel *xdg = t.xdg_toplevel;
    if (!xdg->base->initialized)
        return;
    toplevel_set_fullscreen(t, xdg->requested.fullscreen);
    wlr_xdg_surface_schedule_configure(xdg->base);
}

static void set_title(vantore_toplevel &t)
{
    dec_refresh_title(t);
    stack_refresh_tabs(t);
}

static void set_app_id(vantore_toplevel &t)
{
    stack_refresh_tabs(t); // a tab without a title shows the app id
    ipc_broadcast(*t.server, VNT_EVT_WINDOWS);
}

static void attach_listeners(vantore_toplevel &t)
{
    wlr_xdg_surface *base = t.xdg_toplevel->base;
    auto &surface = base->surface->events;
    auto &toplevel = t.xdg_toplevel->events;
    listen<&vantore_toplevel::map, xdg_toplevel_map>(t, surface.map);
    listen<&vantore_toplevel::unmap, xdg_toplevel_unmap>(t, surface.unmap);
    listen<&vantore_toplevel::commit, xdg_toplevel_commit>(t, surface.commit);
    listen<&vantore_toplevel::destroy, xdg_toplevel_destroy>(t, toplevel.destroy);
    listen<&vantore_toplevel::request_move, request_move>(t, toplevel.request_move);
    listen<&vantore_toplevel::request_resize, request_resize>(t, toplevel.request_resize);
    listen<&vantore_toplevel::request_maximize, request_maximize>(t, toplevel.request_maximize);
    listen<&vantore_toplevel::request_minimize, request_minimize>(t, toplevel.request_minimize);
    listen<&vantore_toplevel::request_fullscreen, request_fullscreen>(t, toplevel.request_fullscreen);
    listen<&vantore_toplevel::set_title, set_title>(t, toplevel.set_title);
    listen<&vantore_toplevel::set_app_id, set_app_id>(t, toplevel.set_app_id);
    listen<&vantore_toplevel::set_parent, dialog_parent_changed>(t, toplevel.set_parent);
    listen<&vantore_toplevel::ping_timeout, tl_handle_ping_timeout>(t, base->events.ping_timeout);
}

void server_new_xdg_toplevel(vantore_server &server, wlr_xdg_toplevel *xdg_toplevel)
{
    wlr_scene_tree *tree = wlr_scene_xdg_surface_create(server.toplevel_tree, xdg_toplevel->base);
    if (tree == nullptr) {
        wl_resource_post_no_memory(xdg_toplevel->resource);
        return;
    }
    auto *t = new vantore_toplevel{};
    t->server = &server;
    t->id = ++server.next_toplevel_id;
    t->xdg_toplevel = xdg_toplevel;
    t->scene_tree = tree;
    wlr_scene_node_set_enabled(&tree->node, false);
    if (!dec_create_nodes(*t)) {
        wlr_scene_node_destroy(&tree->node);
        delete t;
        wl_resource_post_no_memory(xdg_toplevel->resource);
        return;
    }
    tree->node.data = &t->tag;
    xdg_toplevel->base->data = tree;
    attach_listeners(*t);
}
