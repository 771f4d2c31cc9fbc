#include "popup.hpp"

#include "../input/constraints.hpp"
#include "../input/resting_pointer.hpp"
#include "../outputs/lookup.hpp"
#include "../records.hpp"
#include "../server.hpp"
#include "../workspaces/focus.hpp"
#include "layer.hpp"
#include "layer_keyboard.hpp"
#include "reach.hpp"
#include "toplevel.hpp"

static constexpr int deepest = 64; // menus above one window or panel

struct vantore_popup {
    wlr_xdg_popup *xdg_popup = nullptr;
    vantore_server *server = nullptr;
    listener commit, reposition, destroy;
    listener map, unmap; // of a layer surface's popup
    wlr_scene_tree *tree = nullptr; // null after its parent's tree took it along
    listener tree_destroy;
    int shown_x = 0, shown_y = 0; // relative to its parent, as of the last commit
};

// Returns null unless the surface is a popup's.
static const wlr_xdg_popup *popup_of(wlr_surface *surface)
{
    return surface != nullptr ? wlr_xdg_popup_try_from_wlr_surface(surface) : nullptr;
}

// Returns the surface that a chain of popups hangs from. Null when the chain is broken.
static wlr_surface *root_surface(const wlr_xdg_popup &popup)
{
    wlr_surface *parent = popup.parent;
    while (const wlr_xdg_popup *p = popup_of(parent))
        parent = p->parent;
    return parent;
}

static vantore_toplevel *window_of(const wlr_xdg_popup &popup)
{
    wlr_surface *root = root_surface(popup);
    const wlr_xdg_surface *xdg = root != nullptr ? wlr_xdg_surface_try_from_wlr_surface(root) : nullptr;
    return xdg != nullptr && xdg->role == WLR_XDG_SURFACE_ROLE_TOPLEVEL ? toplevel_of(*xdg) : nullptr;
}

static vantore_layer_surface *layer_of(const wlr_xdg_popup &popup)
{
    wlr_surface *root = root_surface(popup);
    wlr_layer_surface_v1 *layer = root != nullptr ? wlr_layer_surface_v1_try_from_wlr_surface(root) : nullptr;
    return layer != nullptr ? static_cast<vantore_layer_surface *>(layer->data) : nullptr;
}

// Returns the output that holds the window's top left corner, panels included, relative to the window
// geometry.
static wlr_box room_of_window(const vantore_toplevel &t)
{
    const wlr_scene_node &node = t.scene_tree->node;
    wlr_output_layout *layout = t.server->output_layout;
    wlr_output *output = layout_output_at(*t.server, node.x + 1, node.y + 1); // a pixel inside
    if (output == nullptr)
        return {};
    wlr_box box{};
    wlr_output_layout_get_box(layout, output, &box);
    const wlr_box geometry = tl_get_geometry(t);
    box.x += geometry.x - node.x;
    box.y += geometry.y - node.y;
    return box;
}

// Returns the surface's output, relative to the surface.
static wlr_box room_of_layer(const vantore_layer_surface &l)
{
    if (l.layer_surface->output == nullptr)
        return {};
    wlr_box box{};
    wlr_output_layout_get_box(l.server->output_layout, l.layer_surface->output, &box);
    box.x -= l.scene->tree->node.x;
    box.y -= l.scene->tree->node.y;
    return box;
}

// Returns where the popup may lie, relative to the window geometry or the layer surface that its chain hangs
// from. A nested menu stays on that output too, even if its parent menu lies elsewhere. Empty when there is
// no output.
static wlr_box room_for(const vantore_popup &p)
{
    if (const vantore_toplevel *t = window_of(*p.xdg_popup))
        return room_of_window(*t);
    const vantore_layer_surface *l = layer_of(*p.xdg_popup);
    return l != nullptr ? room_of_layer(*l) : wlr_box{};
}

static void popup_unconstrain(const vantore_popup &p)
{
    const wlr_box box = room_for(p);
    if (wlr_box_empty(&box))
        return;
    wlr_xdg_popup_unconstrain_from_box(p.xdg_popup, &box);
    // If the client allows its menu to be cut and nothing would be left of it, the menu gets the box that it
    // asked for. No client can draw an empty menu.
    auto &scheduled = p.xdg_popup->scheduled;
    if (scheduled.geometry.width < 1 || scheduled.geometry.height < 1)
        wlr_xdg_positioner_rules_get_geometry(&scheduled.rules, &scheduled.geometry);
}

// The client may have moved its menu.
static void note_place(vantore_popup &p)
{
    const wlr_box &now = p.xdg_popup->current.geometry;
    if (now.x != p.shown_x || now.y != p.shown_y)
        pointer_look_again(*p.server);
    p.shown_x = now.x;
    p.shown_y = now.y;
}

static void xdg_popup_commit(vantore_popup &p)
{
    note_place(p);
    if (!p.xdg_popup->base->initial_commit)
        return;
    popup_unconstrain(p);
    wlr_xdg_surface_schedule_configure(p.xdg_popup->base);
}

static void xdg_popup_reposition(vantore_popup &p)
{
    if (p.xdg_popup->base->initialized)
        popup_unconstrain(p);
}

// A panel usually has no keyboard that its menu could use, so a menu that grabs gets it.
static void layer_popup_map(vantore_popup &p)
{
    if (p.xdg_popup->seat == nullptr || p.server->locked)
        return;
    keyboard_enter(p.server->seat, p.xdg_popup->base->surface);
    constrain_to_surface(*p.server, p.xdg_popup->base->surface);
}

// Gives the keyboard to the menu that this one belongs to, or back to the panel or a window.
static void give_keyboard_back(vantore_popup &p)
{
    const wlr_xdg_popup *parent = popup_of(p.xdg_popup->parent);
    if (parent != nullptr && parent->seat != nullptr && parent->base->surface->mapped)
        keyboard_enter(p.server->seat, parent->base->surface);
    else if (vantore_layer_surface *l = layer_of(*p.xdg_popup))
        layer_take_keyboard_back(*l);
}

static void layer_popup_unmap(vantore_popup &p)
{
    const wlr_surface *surface = p.xdg_popup->base->surface;
    if (!has_keyboard(*p.server, surface))
        return;
    if (!p.server->locked)
        give_keyboard_back(p);
    if (has_keyboard(*p.server, surface)) // nobody has taken it
        focus_clear(*p.server);
}

bool popup_has_keyboard(const vantore_layer_surface &l)
{
    const wlr_xdg_popup *focused = popup_of(l.server->seat->keyboard_state.focused_surface);
    return focused != nullptr && layer_of(*focused) == &l;
}

static void handle_tree_destroy(vantore_popup &p)
{
    unlisten(p.tree_destroy);
    p.tree = nullptr;
    p.xdg_popup->base->data = nullptr;
}

// The xdg_surface may outlive this popup and become a popup again, so nothing of this one may remain.
static void xdg_popup_destroy(vantore_popup &p)
{
    if (p.tree != nullptr)
        wlr_scene_node_destroy(&p.tree->node);
    delete &p;
}

static bool has_role_object(const wlr_xdg_surface &surface)
{
    switch (surface.role) {
    case WLR_XDG_SURFACE_ROLE_TOPLEVEL:
        return surface.toplevel != nullptr;
    case WLR_XDG_SURFACE_ROLE_POPUP:
        return surface.popup != nullptr;
    case WLR_XDG_SURFACE_ROLE_NONE:
        return false;
    }
    return false;
}

// The library accepts a parent whose popup has been destroyed. Two popups could then become each other's
// parents, and the library would walk that ring without end.
static bool has_dead_parent(const wlr_xdg_popup &popup)
{
    const wlr_xdg_surface *parent =
        popup.parent != nullptr ? wlr_xdg_surface_try_from_wlr_surface(popup.parent) : nullptr;
    return parent != nullptr && !has_role_object(*parent);
}

// Each level is walked at each commit, so a deep chain of menus would bring the session to a standstill.
static bool is_nested_too_deep(const wlr_xdg_popup &popup)
{
    int depth = 1;
    for (const wlr_xdg_popup *p = popup_of(popup.parent); p != nullptr && depth <= deepest;
         p = popup_of(p->parent))
        depth++;
    return depth > deepest;
}

static wlr_scene_tree *tree_of_parent(const wlr_xdg_popup &popup)
{
    wlr_xdg_surface *parent =
        popup.parent != nullptr ? wlr_xdg_surface_try_from_wlr_surface(popup.parent) : nullptr;
    return parent != nullptr ? static_cast<wlr_scene_tree *>(parent->data) : nullptr;
}

void server_new_xdg_popup(vantore_server &server, wlr_xdg_popup *popup)
{
    if (has_dead_parent(*popup)) {
        wl_resource_post_error(popup->base->client->resource, XDG_WM_BASE_ERROR_INVALID_POPUP_PARENT,
                               "the parent of a popup is gone");
        return;
    }
    if (is_nested_too_deep(*popup)) {
        wl_resource_post_error(popup->base->client->resource, XDG_WM_BASE_ERROR_INVALID_POPUP_PARENT,
                               "menus are nested more than %d deep", deepest);
        return;
    }
    if (wlr_scene_tree *parent = tree_of_parent(*popup))
        popup_show(server, *popup, parent);
}

static void attach_listeners(vantore_popup &p)
{
    wlr_xdg_popup &popup = *p.xdg_popup;
    auto &surface = popup.base->surface->events;
    listen<&vantore_popup::tree_destroy, handle_tree_destroy>(p, p.tree->node.events.destroy);
    listen<&vantore_popup::commit, xdg_popup_commit>(p, surface.commit);
    listen<&vantore_popup::reposition, xdg_popup_reposition>(p, popup.events.reposition);
    listen<&vantore_popup::destroy, xdg_popup_destroy>(p, popup.events.destroy);
    if (layer_of(popup) == nullptr)
        return;
    listen<&vantore_popup::map, layer_popup_map>(p, surface.map);
    listen<&vantore_popup::unmap, layer_popup_unmap>(p, surface.unmap);
}

void popup_show(vantore_server &server, wlr_xdg_popup &popup, wlr_scene_tree *parent)
{
    wlr_scene_tree *tree = wlr_scene_xdg_surface_create(parent, popup.base);
    if (tree == nullptr)
        return wl_resource_post_no_memory(popup.resource);
    popup.base->data = tree; // nested popups look up their parent tree here
    if (vantore_toplevel *t = window_of(popup))
        forget_reach(*t);
    auto *p = new vantore_popup{};
    p->xdg_popup = &popup;
    p->server = &server;
    p->tree = tree;
    attach_listeners(*p);
}

static const wlr_xdg_popup *menu_with_grab(const vantore_server &server)
{
    for (auto &grab : each<&wlr_xdg_popup_grab::link>(server.xdg_shell->popup_grabs))
        if (server.seat->pointer_state.grab == &grab.pointer_grab)
            return each<&wlr_xdg_popup::grab_link>(grab.popups).first();
    return nullptr;
}

void end_menus_of_others(const vantore_toplevel &t)
{
    const wlr_xdg_popup *menu = menu_with_grab(*t.server);
    if (menu != nullptr && window_of(*menu) != &t)
        wlr_seat_pointer_end_grab(t.server->seat); // tells all menus of the grab
}

void end_menus_of_windows(vantore_server &server)
{
    const wlr_xdg_popup *menu = menu_with_grab(server);
    if (menu != nullptr && window_of(*menu) != nullptr)
        wlr_seat_pointer_end_grab(server.seat);
}
