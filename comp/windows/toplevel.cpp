// The adapter over the window's shell objects, and the detection of hung windows.
//
// A ping is sent only when somebody asks the window to close, so a window is only ever found hung when the
// user has tried to close it. The second close is a forced one; any commit before it clears the mark.

#include "toplevel.hpp"

#include "../platform.hpp"
#include "../server.hpp"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>

// A client may claim any geometry. Beyond this nobody sees a difference, and sums stay within an int.
static constexpr int farthest = 1 << 24;
static constexpr int widest_bar = 16384; // pixels that a title is drawn in

static constexpr uint32_t all_edges = WLR_EDGE_TOP | WLR_EDGE_BOTTOM | WLR_EDGE_LEFT | WLR_EDGE_RIGHT;

vantore_toplevel *toplevel_by_id(vantore_server &server, uint32_t id)
{
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (t.id == id)
            return &t;
    return nullptr;
}

// A window's xdg surface has its scene tree as data, and the tree its record.
vantore_toplevel *toplevel_of(const wlr_xdg_surface &surface)
{
    const auto *tree = static_cast<const wlr_scene_tree *>(surface.data);
    return tree != nullptr ? static_cast<vantore_toplevel *>(tree->node.data) : nullptr;
}

wlr_surface *tl_surface(const vantore_toplevel &t)
{
    return t.xdg_toplevel->base->surface;
}

bool tl_mapped(const vantore_toplevel &t)
{
    const wlr_surface *surface = tl_surface(t);
    return surface != nullptr && surface->mapped;
}

const char *tl_title(const vantore_toplevel &t)
{
    static std::array<char, 512> marked;
    const char *title = t.xdg_toplevel->title;
    if (!t.unresponsive)
        return title;
    const bool named = title != nullptr && *title != '\0';
    snprintf(marked.data(), marked.size(), "%s (Not Responding)", named ? title : "Window");
    return marked.data();
}

const char *tl_app_id(const vantore_toplevel &t)
{
    return t.xdg_toplevel->app_id;
}

wlr_box tl_get_geometry(const vantore_toplevel &t)
{
    const wlr_box &claimed = t.xdg_toplevel->base->geometry;
    return {.x = std::clamp(claimed.x, -farthest, farthest),
            .y = std::clamp(claimed.y, -farthest, farthest),
            .width = std::min(claimed.width, farthest),
            .height = std::min(claimed.height, farthest)};
}

void tl_set_size(vantore_toplevel &t, int w, int h)
{
    wlr_xdg_toplevel_set_size(t.xdg_toplevel, w, h);
}

void tl_set_tiled(vantore_toplevel &t, bool on)
{
    if (on == t.tiled_state)
        return;
    t.tiled_state = on;
    wlr_xdg_toplevel_set_tiled(t.xdg_toplevel, on ? all_edges : 0);
}

void tl_set_activated(vantore_toplevel &t, bool activated)
{
    wlr_xdg_toplevel_set_activated(t.xdg_toplevel, activated);
}

void tl_set_fullscreen_state(vantore_toplevel &t, bool fullscreen)
{
    wlr_xdg_toplevel_set_fullscreen(t.xdg_toplevel, fullscreen);
}

pid_t tl_pid(const vantore_toplevel &t)
{
    return g_platform.client_pid(wl_resource_get_client(t.xdg_toplevel->resource));
}

void tl_close(vantore_toplevel &t)
{
    if (!t.unresponsive) {
        wlr_xdg_toplevel_send_close(t.xdg_toplevel);
        wlr_xdg_surface_ping(t.xdg_toplevel->base);
        return;
    }
    // 0 would be our own process group and 1 is init: neither is ever a client.
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
    const int width = tl_surface(t)->current.width;
    return std::clamp(width > 0 ? width : tl_get_geometry(t).width, 1, widest_bar);
}

wlr_box toplevel_box(const vantore_toplevel &t)
{
    const wlr_box geometry = tl_get_geometry(t);
    const wlr_scene_node &node = t.scene_tree->node;
    return {.x = node.x, .y = node.y, .width = geometry.width, .height = geometry.height};
}
