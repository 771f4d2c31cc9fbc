// The adapter over the window's shell objects.
//
// A ping is sent only when somebody asks a window to close, so only a window that the user tried to close can
// be found unresponsive. The next request to close kills the client. Any commit of one of the client's
// windows before that clears the mark.

#include "toplevel.hpp"

#include "../input/resting_pointer.hpp"
#include "../platform.hpp"
#include "../presentation/decorations.hpp"
#include "../server.hpp"
#include "xwl_events.hpp"

#include <algorithm>
#include <array>
#include <climits>
#include <csignal>
#include <cstdio>
#include <limits>

// A client may claim any geometry. Values beyond this make no visible difference, and sums below it stay
// within an int.
static constexpr int farthest = 1 << 24;
static constexpr int largest_shown = 16384; // layout pixels

static constexpr uint32_t all_edges = WLR_EDGE_TOP | WLR_EDGE_BOTTOM | WLR_EDGE_LEFT | WLR_EDGE_RIGHT;

vantore_toplevel *toplevel_by_id(vantore_server &server, uint32_t id)
{
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (t.id == id)
            return &t;
    return nullptr;
}

// The data of a window's xdg surface is its scene tree, and the data of the tree's node is the window's tag.
vantore_toplevel *toplevel_of(const wlr_xdg_surface &surface)
{
    const auto *tree = static_cast<const wlr_scene_tree *>(surface.data);
    return tree != nullptr ? toplevel_of(tree->node) : nullptr;
}

wlr_surface *tl_surface(const vantore_toplevel &t)
{
    return t.kind == VNT_XWL ? t.xwl->surface : t.xdg_toplevel->base->surface;
}

bool tl_mapped(const vantore_toplevel &t)
{
    const wlr_surface *surface = tl_surface(t);
    return surface != nullptr && surface->mapped;
}

// The data of an X11 surface is the record of its window, or null.
vantore_toplevel *tl_parent(const vantore_toplevel &t)
{
    if (t.kind == VNT_XWL) {
        const wlr_xwayland_surface *parent = t.xwl->parent;
        return parent != nullptr ? static_cast<vantore_toplevel *>(parent->data) : nullptr;
    }
    const wlr_xdg_toplevel *parent = t.xdg_toplevel->parent;
    return parent != nullptr ? toplevel_of(*parent->base) : nullptr;
}

const char *tl_title(const vantore_toplevel &t)
{
    static std::array<char, 512> marked;
    const char *title = t.kind == VNT_XWL ? t.xwl->title : t.xdg_toplevel->title;
    if (!t.unresponsive)
        return title;
    const bool named = title != nullptr && *title != '\0';
    snprintf(marked.data(), marked.size(), "%s (Not Responding)", named ? title : "Window");
    return marked.data();
}

const char *tl_app_id(const vantore_toplevel &t)
{
    return t.kind == VNT_XWL ? t.xwl->class_ : t.xdg_toplevel->app_id;
}

wlr_box tl_get_geometry(const vantore_toplevel &t)
{
    if (t.kind == VNT_XWL)
        return {.x = 0, .y = 0, .width = t.xwl->width, .height = t.xwl->height};
    const wlr_box &claimed = t.xdg_toplevel->base->geometry;
    return {.x = std::clamp(claimed.x, -farthest, farthest),
            .y = std::clamp(claimed.y, -farthest, farthest),
            .width = std::min(claimed.width, farthest),
            .height = std::min(claimed.height, farthest)};
}

template <class Number> static Number x11_number(int value, int least)
{
    return Number(std::clamp(value, least, int{std::numeric_limits<Number>::max()}));
}

static int16_t x11_position(int value)
{
    return x11_number<int16_t>(value, std::numeric_limits<int16_t>::min());
}

// An X11 window has its new width at once, and its commits do not lay out the decorations, so this does.
static void configure_x11(vantore_toplevel &t, int w, int h)
{
    const wlr_scene_node &node = t.scene_tree->node;
    wlr_xwayland_surface_configure(t.xwl, x11_position(node.x), x11_position(node.y),
                                   x11_number<uint16_t>(w, 1), x11_number<uint16_t>(h, 1));
    dec_layout(t);
}

void tl_set_size(vantore_toplevel &t, int w, int h)
{
    if (t.kind == VNT_XWL)
        configure_x11(t, w, h);
    else
        wlr_xdg_toplevel_set_size(t.xdg_toplevel, w, h);
}

bool tl_has_size(const vantore_toplevel &t, int w, int h)
{
    const wlr_box shown = tl_get_geometry(t);
    if (shown.width != w || shown.height != h)
        return false;
    if (t.kind == VNT_XWL) {
        const wlr_scene_node &node = t.scene_tree->node;
        return t.xwl->x == x11_position(node.x) && t.xwl->y == x11_position(node.y);
    }
    const auto &asked = t.xdg_toplevel->scheduled;
    return asked.width == w && asked.height == h;
}

// Arrangements happen far more often than sizes change, and each request wakes the client.
void tl_place(vantore_toplevel &t, const wlr_box &content)
{
    scene_node_move(*t.server, t.scene_tree->node, content.x, content.y);
    t.want_w = content.width;
    t.want_h = content.height;
    if (!tl_has_size(t, content.width, content.height))
        tl_set_size(t, content.width, content.height);
}

void tl_follow_x11(vantore_toplevel &t)
{
    scene_node_move(*t.server, t.scene_tree->node, t.xwl->x, t.xwl->y);
    dec_layout(t);
}

void tl_move(vantore_toplevel &t, int lx, int ly)
{
    scene_node_move(*t.server, t.scene_tree->node, lx, ly);
    if (t.kind == VNT_XWL)
        configure_x11(t, t.xwl->width, t.xwl->height);
}

void tl_set_tiled(vantore_toplevel &t, bool on)
{
    if (t.kind == VNT_XWL || on == t.tiled_state)
        return;
    t.tiled_state = on;
    wlr_xdg_toplevel_set_tiled(t.xdg_toplevel, on ? all_edges : 0);
}

void tl_set_activated(vantore_toplevel &t, bool activated)
{
    if (t.kind == VNT_XWL)
        wlr_xwayland_surface_activate(t.xwl, activated);
    else
        wlr_xdg_toplevel_set_activated(t.xdg_toplevel, activated);
}

// A surface keeps the keyboard while its window dies, and the next window of the same surface does not know
// that. An X11 window may have got the keyboard as a menu, before it became a window.
void tl_ensure_activated(vantore_toplevel &t)
{
    if (t.kind == VNT_XWL || !t.xdg_toplevel->scheduled.activated)
        tl_set_activated(t, true);
}

void tl_set_maximized(vantore_toplevel &t, bool maximized)
{
    if (t.kind == VNT_XWL)
        wlr_xwayland_surface_set_maximized(t.xwl, maximized, maximized);
    else
        wlr_xdg_toplevel_set_maximized(t.xdg_toplevel, maximized);
}

void tl_set_minimized(vantore_toplevel &t, bool minimized)
{
    if (t.kind == VNT_XWL)
        wlr_xwayland_surface_set_minimized(t.xwl, minimized);
}

void tl_restack(vantore_toplevel &t)
{
    if (t.kind == VNT_XWL)
        wlr_xwayland_surface_restack(t.xwl, nullptr, XCB_STACK_MODE_ABOVE);
}

wlr_box tl_least_size(const vantore_toplevel &t)
{
    if (t.kind == VNT_XWL)
        return {};
    const wlr_xdg_toplevel_state &limits = t.xdg_toplevel->current;
    return {.x = 0, .y = 0, .width = limits.min_width, .height = limits.min_height};
}

// Only the scene knows how far popups and subsurfaces extend.
static bool may_reach_beyond_its_surface(const vantore_toplevel &t, const wlr_surface_state &shown)
{
    return has_any(shown.subsurfaces_above) || has_any(shown.subsurfaces_below) ||
           (t.kind == VNT_XDG && has_any(t.xdg_toplevel->base->popups));
}

static int as_int(int64_t value)
{
    return int(std::clamp<int64_t>(value, INT_MIN, INT_MAX));
}

// A client may claim any geometry, so the sums are made in 64 bits.
vantore_reach tl_reach(const vantore_toplevel &t)
{
    const wlr_surface *surface = tl_surface(t);
    if (surface == nullptr || may_reach_beyond_its_surface(t, surface->current))
        return {};
    int64_t left = 0, top = 0;
    if (t.kind == VNT_XDG) {
        left = -int64_t{t.xdg_toplevel->base->geometry.x};
        top = -int64_t{t.xdg_toplevel->base->geometry.y};
    }
    return {.left = as_int(left),
            .top = as_int(top),
            .right = as_int(left + surface->current.width),
            .bottom = as_int(top + surface->current.height)};
}

void tl_set_fullscreen_state(vantore_toplevel &t, bool fullscreen)
{
    if (t.kind == VNT_XWL)
        wlr_xwayland_surface_set_fullscreen(t.xwl, fullscreen);
    else
        wlr_xdg_toplevel_set_fullscreen(t.xdg_toplevel, fullscreen);
}

pid_t tl_pid(const vantore_toplevel &t)
{
    return t.kind == VNT_XWL ? t.xwl->pid
                             : g_platform.client_pid(wl_resource_get_client(t.xdg_toplevel->resource));
}

// The library sends an xdg client no second ping while it waits for the answer to the first, which then
// counts for both.
static void ask_to_close(vantore_toplevel &t)
{
    if (t.kind == VNT_XWL) {
        wlr_xwayland_surface_close(t.xwl);
        if (xwl_supports_ping(*t.xwl))
            wlr_xwayland_surface_ping(t.xwl);
    } else {
        wlr_xdg_toplevel_send_close(t.xdg_toplevel);
        wlr_xdg_surface_ping(t.xdg_toplevel->base);
        t.close_ping = t.xdg_toplevel->base->client->ping_serial;
    }
}

void tl_close(vantore_toplevel &t)
{
    if (!t.unresponsive)
        return ask_to_close(t);
    // 0 would mean our own process group, and 1 is init. Neither is ever a client.
    if (const pid_t pid = tl_pid(t); pid > 1)
        g_platform.send_signal(pid, SIGKILL);
}

int titlebar_of(const vantore_toplevel &t)
{
    return t.ssd ? titlebar_height : 0;
}

bool tl_on_screen(const vantore_toplevel &t)
{
    const wlr_scene_node &node = t.scene_tree->node;
    return node.enabled && node.parent->node.enabled;
}

int tl_shown_width(const vantore_toplevel &t)
{
    const int width = t.kind == VNT_XWL ? t.xwl->width : tl_surface(t)->current.width;
    return std::clamp(width > 0 ? width : tl_get_geometry(t).width, 1, largest_shown);
}

int tl_shown_height(const vantore_toplevel &t)
{
    const bool drawn = t.kind == VNT_XDG && tl_surface(t)->current.width > 0;
    return std::clamp(drawn ? tl_surface(t)->current.height : tl_get_geometry(t).height, 1, largest_shown);
}

wlr_box toplevel_box(const vantore_toplevel &t)
{
    const wlr_box geometry = tl_get_geometry(t);
    const wlr_scene_node &node = t.scene_tree->node;
    return {.x = node.x, .y = node.y, .width = geometry.width, .height = geometry.height};
}
