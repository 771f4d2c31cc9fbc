#include "hit_test.hpp"

#include "../config/settings.hpp"
#include "../server.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/stacks.hpp"
#include "../workspaces/tiles.hpp"
#include "constraints.hpp"
#include "drag_zones.hpp"

#include <algorithm>
#include <cmath>

static bool may_hold(const vantore_reach &reach, int x, int y)
{
    return x >= reach.left && x < reach.right && y >= reach.top && y < reach.bottom;
}

// Wraps round where a window is two billion pixels away. It may then get a closer look, which finds nothing.
static int distance(int from, int to)
{
    return int(uint32_t(to) - uint32_t(from));
}

static bool is_empty_tree(wlr_scene_node &node)
{
    return node.type == WLR_SCENE_NODE_TREE && !has_any(wlr_scene_tree_from_node(&node)->children);
}

struct lookup {
    const vantore_server &server;
    double lx, ly;
    double *nx, *ny;
    const vantore_toplevel *except;
    const wlr_scene_node *leaving; // a workspace that slides away and takes no input any more; may be null
};

static bool may_be_hit(const lookup &at, const vantore_toplevel &t, int x, int y)
{
    return may_hold(t.reach, x, y) && &t != at.except;
}

// `x` and `y` are relative to the tree. This runs for every window at every motion of the pointer, so it must
// stay cheap.
static wlr_scene_node *top_child_at(const lookup &at, const wlr_scene_tree &tree, int x, int y)
{
    const wlr_scene_node *windows = &at.server.toplevel_tree->node;
    for (const wl_list *link = tree.children.prev; link != &tree.children; link = link->prev) {
        wlr_scene_node *child = wl_container_of(link, child, link);
        if (!child->enabled || child == at.leaving)
            continue;
        const vantore_toplevel *t = toplevel_of(*child);
        if (t != nullptr ? !may_be_hit(at, *t, distance(child->x, x), distance(child->y, y))
                         : is_empty_tree(*child))
            continue;
        const bool holds_windows = t == nullptr && (child == windows || &tree.node == windows);
        wlr_scene_node *found =
            holds_windows ? top_child_at(at, *wlr_scene_tree_from_node(child), x - child->x, y - child->y)
                          : wlr_scene_node_at(child, at.lx, at.ly, at.nx, at.ny);
        if (found != nullptr)
            return found;
    }
    return nullptr;
}

// This is far beyond any layout of outputs.
static constexpr double farthest = 1e9;

static int pixel_at(double coordinate)
{
    return int(std::clamp(std::floor(coordinate), -farthest, farthest));
}

wlr_scene_node *scene_node_at(const vantore_server &server, double lx, double ly, double *nx, double *ny,
                              const vantore_toplevel *except)
{
    const wlr_scene_tree *from = server.sliding.from;
    const wlr_scene_node *leaving = from != nullptr ? &from->node : nullptr;
    const lookup at{
        .server = server, .lx = lx, .ly = ly, .nx = nx, .ny = ny, .except = except, .leaving = leaving};
    return top_child_at(at, server.scene->tree, pixel_at(lx), pixel_at(ly));
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

bool is_unmanaged(wlr_surface *surface)
{
    const wlr_xwayland_surface *xwl =
        surface != nullptr ? wlr_xwayland_surface_try_from_wlr_surface(surface) : nullptr;
    return xwl != nullptr && xwl->override_redirect;
}

bool is_layer(wlr_surface *surface)
{
    return surface != nullptr && wlr_layer_surface_v1_try_from_wlr_surface(surface) != nullptr;
}

static bool is_menu(wlr_surface *surface)
{
    wlr_surface *root = surface != nullptr ? wlr_surface_get_root_surface(surface) : nullptr;
    return root != nullptr && (is_unmanaged(root) || wlr_xdg_popup_try_from_wlr_surface(root) != nullptr);
}

bool hides_frames(wlr_surface *surface)
{
    return is_layer(surface) || is_menu(surface);
}

static vantore_toplevel *owner_above(const wlr_scene_node &node)
{
    const wlr_scene_tree *tree = node.parent;
    while (tree != nullptr && tree->node.data == nullptr)
        tree = tree->node.parent;
    return tree != nullptr ? toplevel_of(tree->node) : nullptr;
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
    vantore_toplevel *t = node != nullptr ? owner_above(*node) : nullptr;
    hit.frame = hit.surface == nullptr ? t : nullptr;
    return hit.surface != nullptr ? t : nullptr;
}

// A workspace that slides in is not in its place yet, and its windows with it.
static int slid_by(const vantore_toplevel &t)
{
    return t.scene_tree->node.parent->node.x;
}

static wlr_box shown_box(const vantore_toplevel &t)
{
    wlr_box box = toplevel_box(t);
    box.x += slid_by(t);
    return box;
}

vantore_dec_region dec_region_of(const surface_hit &hit, double lx, double ly)
{
    if (hit.frame == nullptr || !hit.frame->ssd)
        return DEC_NONE;
    const wlr_box shown = shown_box(*hit.frame);
    const double rx = lx - shown.x, ry = ly - shown.y;
    const int width = tl_get_geometry(*hit.frame).width; // the bar may be drawn wider
    return rx >= 0 && rx < width ? dec_region_at(width, rx, ry) : DEC_NONE;
}

vantore_toplevel *decoration_at(const vantore_server &server, double lx, double ly,
                                vantore_dec_region &region)
{
    surface_hit hit;
    desktop_toplevel_at(server, lx, ly, hit);
    region = dec_region_of(hit, lx, ly);
    return region != DEC_NONE ? hit.frame : nullptr;
}

vantore_toplevel *tab_at(const vantore_server &server, double lx, double ly, const vantore_toplevel *except)
{
    const wlr_scene_node *node = scene_node_at(server, lx, ly, nullptr, nullptr, except);
    const vantore_toplevel *t = node != nullptr ? owner_above(*node) : nullptr;
    return t != nullptr && node == &t->tabbar->node ? stack_tab_at(*t, lx - slid_by(*t)) : nullptr;
}

// The edges of a maximized or fullscreen window are the screen's edges, where people reach for scroll bars.
// A client that constrains the pointer needs it up to its own edges.
static bool has_resize_borders(const vantore_toplevel &t)
{
    return !toplevel_is_tiled(t) && !t.maximized && !t.fullscreen && !constrains_pointer(t);
}

uint32_t resize_edges_at(const vantore_toplevel &t, double lx, double ly)
{
    if (!has_resize_borders(t))
        return WLR_EDGE_NONE;
    return resize_edges_in(shown_box(t), g_resize_border, lx, ly);
}
