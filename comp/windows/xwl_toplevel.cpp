// The life of an X11 window that the compositor manages.
//
// Created: the record exists, in no list and without a scene node. Associated: it has a surface, and the
// record listens to its map, unmap and commit. Mapped: it has a scene tree, a workspace and a place in
// server.toplevels. Unmapped: it has none of these, and the next map starts anew. At any moment, a window may
// become an unmanaged one or come back. Then the record of one kind ends, and a record of the other kind
// begins.

#include "xwl_toplevel.hpp"

#include "../broadcast.hpp"
#include "../input/constraints.hpp"
#include "../input/modes.hpp"
#include "../memory_trim.hpp"
#include "../presentation/decorations.hpp"
#include "../presentation/open_fade.hpp"
#include "../server.hpp"
#include "../workspaces/arrange.hpp"
#include "../workspaces/focus.hpp"
#include "../workspaces/workspace.hpp"
#include "app_rules.hpp"
#include "fullscreen.hpp"
#include "mapping.hpp"
#include "reach.hpp"
#include "responsiveness.hpp"
#include "toplevel.hpp"
#include "unmanaged.hpp"
#include "xwl_events.hpp"
#include "xwl_requests.hpp"

void xwl_map_if_drawn(const wlr_xwayland_surface &xwl)
{
    if (wlr_surface_has_buffer(xwl.surface))
        wlr_surface_map(xwl.surface);
}

static void xwl_surface_commit(vantore_toplevel &t)
{
    enforce_fullscreen_pos(t);
    tl_note_sign_of_life(t);
    if (t.scene_tree == nullptr)
        return;
    anim_open_hold(t);
    note_reach(t);
}

static void listen_to_commits(vantore_toplevel &t)
{
    listen<&vantore_toplevel::commit, xwl_surface_commit>(t, t.xwl->surface->events.commit);
}

static bool create_scene_tree(vantore_toplevel &t)
{
    t.scene_tree = wlr_scene_tree_create(t.server->toplevel_tree);
    if (t.scene_tree == nullptr)
        return false;
    t.scene_tree->node.data = &t.tag;
    if (wlr_scene_subsurface_tree_create(t.scene_tree, t.xwl->surface) != nullptr && dec_create_nodes(t))
        return true;
    wlr_scene_node_destroy(&t.scene_tree->node);
    t.scene_tree = nullptr;
    return false;
}

static bool wants_title_bar(const wlr_xwayland_surface &xwl)
{
    return (xwl.decorations & WLR_XWAYLAND_SURFACE_DECORATIONS_NO_TITLE) == 0;
}

// A window's states end when it is withdrawn (EWMH, _NET_WM_STATE). The client sets them anew for the next
// map.
static void forget_earlier_map(vantore_toplevel &t)
{
    t.fullscreen = t.maximized = t.minimized = t.put_away = t.snapped = false;
    t.stack_id = 0;
    t.want_w = t.want_h = 0;
}

static void xwl_toplevel_map(vantore_toplevel &t)
{
    vantore_server &server = *t.server;
    forget_earlier_map(t);
    if (!create_scene_tree(t)) {
        wlr_log(WLR_ERROR, "vantore-comp: no memory for an X11 window, it is not shown");
        return;
    }
    listen_to_commits(t); // again, to come after the scene, which has just begun to listen
    t.ssd = wants_title_bar(*t.xwl);
    t.xwl->data = &t;
    wl_list_insert(&server.toplevels, &t.link);
    toplevel_set_workspace(t, workspace_for_new_window(server));
    const xwl_wish wish = xwl_take_wish(t.xwl->window_id);
    if (t.xwl->parent != nullptr || t.xwl->modal || wish.modal)
        t.floating = true;
    config_apply_rules(t); // after the lines that set floating, to override them
    dec_layout(t);
    center_toplevel(t); // ignores the place that the client asked for
    arrange_workspace(t.workspace);
    focus_new_window(t);
    if (t.xwl->fullscreen || wish.fullscreen)
        toplevel_set_fullscreen(t, true);
    if (toplevel_visible(t))
        anim_open_start(t);
}

static void xwl_toplevel_unmap(vantore_toplevel &t)
{
    if (t.scene_tree == nullptr)
        return;
    window_leaves(t);
    vantore_workspace *ws = t.workspace;
    leave_shown_windows(t);
    unlink_from_list(t.ws_link);
    t.workspace = nullptr;
    wlr_scene_node_destroy(&t.scene_tree->node);
    t.scene_tree = nullptr;
    arrange_workspace(ws);
    refocus_after_unmap(t);
    ipc_broadcast(*t.server, VNT_EVT_WINDOWS);
    window_left(*t.server);
}

static void xwl_handle_associate(vantore_toplevel &t)
{
    auto &surface = t.xwl->surface->events;
    listen<&vantore_toplevel::map, xwl_toplevel_map>(t, surface.map);
    listen<&vantore_toplevel::unmap, xwl_toplevel_unmap>(t, surface.unmap);
    listen_to_commits(t);
    xwl_map_if_drawn(*t.xwl);
}

// The library may send this without an associate event before it.
static void xwl_handle_dissociate(vantore_toplevel &t)
{
    unlisten(t.map);
    unlisten(t.unmap);
    unlisten(t.commit);
}

// A mapped window has been unmapped before this runs.
static void xwl_handle_destroy(vantore_toplevel &t)
{
    vantore_server &server = *t.server;
    wl_signal_emit_mutable(&server.window_ends, &t);
    t.xwl->data = nullptr;
    delete &t;
    memory_note_window_gone(server);
}

// The window becomes a menu, or a game's window that places itself.
static void xwl_handle_set_override_redirect(vantore_toplevel &t)
{
    if (!t.xwl->override_redirect)
        return;
    vantore_server &server = *t.server;
    wlr_xwayland_surface *xwl = t.xwl;
    xwl_toplevel_unmap(t);
    xwl_handle_destroy(t);
    unmanaged_take_over(*server_new_unmanaged(server, xwl));
}

vantore_toplevel *server_new_xwl_toplevel(vantore_server &server, wlr_xwayland_surface *xwl)
{
    auto *t = new vantore_toplevel{};
    t->server = &server;
    t->id = ++server.next_toplevel_id;
    t->kind = VNT_XWL;
    t->xwl = xwl;
    xwl->data = nullptr;
    auto &events = xwl->events;
    listen<&vantore_toplevel::associate, xwl_handle_associate>(*t, events.associate);
    listen<&vantore_toplevel::dissociate, xwl_handle_dissociate>(*t, events.dissociate);
    listen<&vantore_toplevel::xwl_or, xwl_handle_set_override_redirect>(*t, events.set_override_redirect);
    listen<&vantore_toplevel::ping_timeout, tl_handle_ping_timeout>(*t, events.ping_timeout);
    listen<&vantore_toplevel::destroy, xwl_handle_destroy>(*t, events.destroy);
    xwl_listen_to_requests(*t);
    return t;
}

// As a menu, the window got the keyboard without its pointer constraint. It can't keep the keyboard when it
// can't be seen.
static void settle_keyboard_of_menu(vantore_toplevel &t)
{
    vantore_server &server = *t.server;
    if (server.seat->keyboard_state.focused_surface != t.xwl->surface)
        return;
    if (toplevel_visible(t))
        constrain_to_surface(server, t.xwl->surface);
    else
        focus_top_toplevel(server);
}

void xwl_toplevel_take_over(vantore_toplevel &t)
{
    if (t.xwl->surface == nullptr)
        return;
    const bool mapped = t.xwl->surface->mapped;
    xwl_handle_associate(t);
    if (!mapped)
        return;
    xwl_toplevel_map(t);
    if (t.scene_tree != nullptr)
        settle_keyboard_of_menu(t);
}
