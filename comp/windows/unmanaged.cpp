#include "unmanaged.hpp"

#include "../config/settings.hpp"
#include "../input/resting_pointer.hpp"
#include "../outputs/lookup.hpp"
#include "../server.hpp"
#include "../workspaces/focus.hpp"
#include "placement.hpp"
#include "xwl_toplevel.hpp"

static void unmanaged_place(vantore_unmanaged &u)
{
    if (u.scene_tree == nullptr)
        return;
    scene_node_move(*u.server, u.scene_tree->node, u.xwl->x, u.xwl->y);
    wlr_scene_node_raise_to_top(&u.scene_tree->node);
    pointer_look_again(*u.server); // the window may have come up under the pointer
}

// An X11 window that places itself can't ask for the keyboard, so it gets the keyboard when it maps. If the
// user protects the focus, the library guesses from the window's type whether it wants the keyboard.
static bool takes_keyboard(const vantore_unmanaged &u)
{
    return !u.server->locked &&
           (!g_protect_focus || wlr_xwayland_surface_override_redirect_wants_focus(u.xwl));
}

// The node has no data, so hit tests do not take it for a window.
static void unmanaged_map(vantore_unmanaged &u)
{
    vantore_server &server = *u.server;
    u.scene_tree = wlr_scene_subsurface_tree_create(server.unmanaged, u.xwl->surface);
    if (u.scene_tree == nullptr) {
        wlr_log(WLR_ERROR, "vantore-comp: no memory for an X11 menu, it is not shown");
        return;
    }
    unmanaged_place(u);
    if (takes_keyboard(u))
        keyboard_offer(server.seat, u.xwl->surface);
}

// The newest other menu gets the keyboard, or else a window.
static void hand_keyboard_back(vantore_server &server)
{
    for (const auto &u : each<&vantore_unmanaged::link>(server.xwl_unmanaged))
        if (u.scene_tree != nullptr && takes_keyboard(u))
            return keyboard_offer(server.seat, u.xwl->surface);
    focus_back(server);
}

// Gives the keyboard to another window only where the user protects the focus.
static void unmanaged_unmap(vantore_unmanaged &u)
{
    if (u.scene_tree != nullptr)
        wlr_scene_node_destroy(&u.scene_tree->node);
    u.scene_tree = nullptr;
    if (g_protect_focus && has_keyboard(*u.server, u.xwl->surface))
        hand_keyboard_back(*u.server);
}

static void unmanaged_associate(vantore_unmanaged &u)
{
    auto &surface = u.xwl->surface->events;
    listen<&vantore_unmanaged::map, unmanaged_map>(u, surface.map);
    listen<&vantore_unmanaged::unmap, unmanaged_unmap>(u, surface.unmap);
    xwl_map_if_drawn(*u.xwl);
}

// The library may send this without an associate event before it.
static void unmanaged_dissociate(vantore_unmanaged &u)
{
    unlisten(u.map);
    unlisten(u.unmap);
}

static void unmanaged_request_configure(vantore_unmanaged &u, wlr_xwayland_surface_configure_event *event)
{
    wlr_xwayland_surface_configure(u.xwl, event->x, event->y, event->width, event->height);
    unmanaged_place(u);
}

static void unmanaged_destroy(vantore_unmanaged &u)
{
    delete &u;
}

// The window becomes a managed one, with a new id.
static void unmanaged_set_override_redirect(vantore_unmanaged &u)
{
    if (u.xwl->override_redirect)
        return;
    vantore_server &server = *u.server;
    wlr_xwayland_surface *xwl = u.xwl;
    unmanaged_unmap(u);
    unmanaged_destroy(u);
    xwl_toplevel_take_over(*server_new_xwl_toplevel(server, xwl));
}

vantore_unmanaged *server_new_unmanaged(vantore_server &server, wlr_xwayland_surface *xwl)
{
    auto *u = new vantore_unmanaged{};
    u->server = &server;
    u->xwl = xwl;
    wl_list_insert(&server.xwl_unmanaged, &u->link);
    auto &events = xwl->events;
    listen<&vantore_unmanaged::associate, unmanaged_associate>(*u, events.associate);
    listen<&vantore_unmanaged::dissociate, unmanaged_dissociate>(*u, events.dissociate);
    listen<&vantore_unmanaged::set_geometry, unmanaged_place>(*u, events.set_geometry);
    listen<&vantore_unmanaged::request_configure, unmanaged_request_configure>(*u, events.request_configure);
    listen<&vantore_unmanaged::set_override_redirect, unmanaged_set_override_redirect>(
        *u, events.set_override_redirect);
    listen<&vantore_unmanaged::destroy, unmanaged_destroy>(*u, events.destroy);
    return u;
}

void unmanaged_take_over(vantore_unmanaged &u)
{
    if (u.xwl->surface == nullptr)
        return;
    const bool mapped = u.xwl->surface->mapped;
    unmanaged_associate(u);
    if (mapped)
        unmanaged_map(u);
}

static bool covers_output(const vantore_unmanaged &u)
{
    const wlr_xwayland_surface &xwl = *u.xwl;
    wlr_output *under = layout_output_at(*u.server, xwl.x + xwl.width / 2.0, xwl.y + xwl.height / 2.0);
    if (u.scene_tree == nullptr || under == nullptr)
        return false;
    wlr_box screen{};
    wlr_output_layout_get_box(u.server->output_layout, under, &screen);
    return fills({.x = xwl.x, .y = xwl.y, .width = xwl.width, .height = xwl.height}, screen);
}

bool unmanaged_covers_output(vantore_server &server, const wlr_surface *surface)
{
    for (const auto &u : each<&vantore_unmanaged::link>(server.xwl_unmanaged))
        if (u.xwl->surface == surface)
            return covers_output(u);
    return false;
}

bool any_unmanaged_covers_output(vantore_server &server)
{
    for (const auto &u : each<&vantore_unmanaged::link>(server.xwl_unmanaged))
        if (covers_output(u))
            return true;
    return false;
}
