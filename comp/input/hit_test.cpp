#include "hit_test.hpp"

#include "../server.hpp"
#include "../windows/toplevel.hpp"

// Popups and subsurfaces may reach beyond the window: then only the scene itself can tell.
static bool reaches_beyond_its_surface(const vantore_toplevel &t, const wlr_surface &surface)
{
    return wl_list_empty(&t.xdg_toplevel->base->popups) == 0 ||
           wl_list_empty(&surface.current.subsurfaces_above) == 0 ||
           wl_list_empty(&surface.current.subsurfaces_below) == 0;
}

// lx and ly are relative to the parent of the window's tree.
static bool may_hold_point(const vantore_toplevel &t, double lx, double ly)
{
    const wlr_surface *surface = tl_surface(t);
    if (surface == nullptr || reaches_beyond_its_surface(t, *surface))
        return true;
    const wlr_box geometry = tl_get_geometry(t);
    const double sx = lx - t.scene_tree->node.x + geometry.x;
    const double sy = ly - t.scene_tree->node.y + geometry.y;
    return sx >= 0 && sx < surface->current.width && sy >= 0 && sy < surface->current.height;
}

struct lookup {
    const vantore_server &server;
    double lx, ly;
    double *nx, *ny;
};

// Windows hang under toplevel_tree and under the workspace trees, its only children without a window.
static bool holds_windows(const vantore_server &server, const wlr_scene_node &node)
{
    const wlr_scene_tree *windows = server.toplevel_tree;
    return &node == &windows->node || (node.parent == windows && node.data == nullptr);
}

static wlr_scene_node *top_child_at(const lookup &at, wlr_scene_tree &tree, double x, double y);

// x and y are relative to the node's parent.
static wlr_scene_node *node_at(const lookup &at, wlr_scene_node &node, double x, double y)
{
    if (!node.enabled)
        return nullptr;
    if (holds_windows(at.server, node))
        return top_child_at(at, *wlr_scene_tree_from_node(&node), x - node.x, y - node.y);
    const bool is_window = node.data != nullptr && holds_windows(at.server, node.parent->node);
    if (is_window && !may_hold_point(*static_cast<vantore_toplevel *>(node.data), x, y))
        return nullptr;
    return wlr_scene_node_at(&node, at.lx, at.ly, at.nx, at.ny);
}

static wlr_scene_node *top_child_at(const lookup &at, wlr_scene_tree &tree, double x, double y)
{
    for (wl_list *link = tree.children.prev; link != &tree.children; link = link->prev) {
        wlr_scene_node *child = wl_container_of(link, child, link);
        if (wlr_scene_node *found = node_at(at, *child, x, y))
            return found;
    }
    return nullptr;
}

wlr_scene_node *scene_node_at(const vantore_server &server, double lx, double ly, double *nx, double *ny)
{
    const lookup at{.server = server, .lx = lx, .ly = ly, .nx = nx, .ny = ny};
    return top_child_at(at, server.scene->tree, lx, ly);
}

static wlr_surface *surface_of(wlr_scene_node *node)
{
    if (node == nullptr || node->type != WLR_SCENE_NODE_BUFFER)
        return nullptr;
    const wlr_scene_surface *scene_surface =
        wlr_scene_surface_try_from_buffer(wlr_scene_buffer_from_node(node));
    return scene_surface != nullptr ? scene_surface->surface : nullptr;
}

surface_hit surface_at(const vantore_server &server, double lx, double ly)
{
    surface_hit hit;
    hit.surface = surface_of(scene_node_at(server, lx, ly, &hit.sx, &hit.sy));
    return hit;
}

static vantore_toplevel *owner_above(const wlr_scene_node &node)
{
    const wlr_scene_tree *tree = node.parent;
    while (tree != nullptr && tree->node.data == nullptr)
        tree = tree->node.parent;
    return tree != nullptr ? static_cast<vantore_toplevel *>(tree->node.data) : nullptr;
}

static wlr_scene_node *node_below_drag_icon(const vantore_server &server, double lx, double ly,
                                            surface_hit &hit)
{
    wlr_scene_tree *icons = server.drag_icon_tree;
    if (wl_list_empty(&icons->children) != 0)
        return scene_node_at(server, lx, ly, &hit.sx, &hit.sy);
    wlr_scene_node_set_enabled(&icons->node, false);
    wlr_scene_node *node = scene_node_at(server, lx, ly, &hit.sx, &hit.sy);
    wlr_scene_node_set_enabled(&icons->node, true);
    return node;
}

vantore_toplevel *desktop_toplevel_at(const vantore_server &server, double lx, double ly, surface_hit &hit)
{
    wlr_scene_node *node = node_below_drag_icon(server, lx, ly, hit);
    hit.surface = surface_of(node);
    return hit.surface != nullptr ? owner_above(*node) : nullptr;
}
