#include "server_check.hpp"

#include "input/constraints.hpp"
#include "input/hit_test.hpp"
#include "input/pointer.hpp"
#include "ipc/client.hpp"
#include "outputs/lookup.hpp"
#include "outputs/output.hpp"
#include "presentation/effects.hpp"
#include "server.hpp"
#include "windows/layer.hpp"
#include "windows/placement.hpp"
#include "windows/showing.hpp"
#include "windows/toplevel.hpp"
#include "windows/unmanaged.hpp"
#include "workspaces/stacks.hpp"
#include "workspaces/tiles.hpp"
#include "workspaces/workspace.hpp"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace test
{

namespace
{

// This much room is enough for a column of two dozen tiles with gaps and title bars.
constexpr int most_room = 24 * (30 + 8 + 10);

bool lies_in(const wlr_box &inner, const wlr_box &outer)
{
    return inner.width >= 0 && inner.height >= 0 && inner.x >= outer.x && inner.y >= outer.y &&
           inner.x + inner.width <= outer.x + outer.width && inner.y + inner.height <= outer.y + outer.height;
}

class checker
{
public:
    checker(vantore_server &checked, activity active) : server(checked), active_windows(active) {}

    std::vector<std::string> run()
    {
        check_workspaces();
        check_outputs();
        for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
            check_window(t);
        for (auto &l : each<&vantore_layer_surface::link>(server.layer_surfaces))
            check_layer_surface(l);
        for (auto &u : each<&vantore_unmanaged::link>(server.xwl_unmanaged))
            check_unmanaged(u);
        check_active();
        check_remembered();
        check_fullscreen_file();
        return std::move(broken);
    }

private:
    bool expect(bool holds, const std::string &rule)
    {
        if (!holds)
            broken.push_back(rule);
        return holds;
    }

    void check_workspaces()
    {
        int num = 0;
        for (auto &ws : each<&vantore_workspace::link>(server.workspaces)) {
            const std::string name = "workspace " + std::to_string(ws.num);
            expect(ws.num == ++num, name + " stands at its number");
            expect(ws.output == nullptr || ws.output->current_ws == &ws, name + "'s output points back");
            const vantore_sliding &slide = server.sliding;
            const bool leaves = ws.tree == slide.from;
            expect(ws.tree->node.enabled == (ws.output != nullptr || leaves),
                   name + " is visible iff on an output");
            expect(ws.tree->node.x == 0 || leaves || ws.tree == slide.to, name + " is in its place");
            for (auto &t : each<&vantore_toplevel::ws_link>(ws.toplevels))
                check_listed(t, ws, name);
        }
        expect(num == 9, "there are nine workspaces");
    }

    void check_listed(const vantore_toplevel &t, const vantore_workspace &ws, const std::string &name)
    {
        expect(t.workspace == &ws, name + " lists only its own windows");
        if (!expect(t.scene_tree != nullptr, name + " lists only windows in the scene"))
            return;
        expect(tl_mapped(t) || !t.scene_tree->node.enabled, name + " shows no window that is not mapped");
    }

    void check_outputs()
    {
        for (auto &o : each<&vantore_output::link>(server.outputs)) {
            const std::string name = std::string{"output "} + output_name(o.wlr_output);
            expect(o.current_ws == nullptr || o.current_ws->output == &o, name + "'s workspace points back");
            expect(o.scene_output != nullptr, name + " shows the scene");
            if (o.mirror.mir_on)
                check_mirror(o, name);
            if (o.wallpaper.node != nullptr && !o.mirror.mir_on)
                check_wallpaper(*o.wallpaper.node, output_layout_box(o), name + "'s wallpaper");
        }
    }

    void check_mirror(const vantore_output &o, const std::string &name)
    {
        const vantore_mirror &m = o.mirror;
        const wlr_box box = output_layout_box(o);
        expect(o.current_ws == nullptr, name + " mirrors and has no workspace");
        expect(m.source.mir_is_output != (m.source.mir_src_wid != 0), name + " mirrors one thing");
        expect(o.wallpaper.node == nullptr || !o.wallpaper.node->node.enabled,
               name + " mirrors and shows no wallpaper");
        expect(m.mir_tree != nullptr && m.mir_tree->node.x == box.x && m.mir_tree->node.y == box.y &&
                   m.mir_bg->width == box.width && m.mir_bg->height == box.height,
               name + " mirrors in its place");
        const vantore_output *at = output_at(server, server.cursor->x, server.cursor->y);
        const bool all_are_dark = resolve_primary_output(server) == nullptr;
        expect(at != &o || all_are_dark, name + " mirrors and has no pointer");
    }

    // Only other wallpapers lie between a wallpaper and the backdrop.
    void check_wallpaper(wlr_scene_buffer &shown, const wlr_box &box, const std::string &name)
    {
        const wlr_scene_node &node = shown.node;
        expect(node.x == box.x && node.y == box.y, name + " is in its place");
        expect(shown.point_accepts_input != nullptr && !shown.point_accepts_input(&shown, nullptr, nullptr),
               name + " takes no input");
        if (!expect(node.parent == server.layers[0], name + " lies in the background"))
            return;
        expect(node.enabled, name + " shows");
        int others = 0;
        for (auto &o : each<&vantore_output::link>(server.outputs))
            others += o.wallpaper.node != nullptr && o.wallpaper.node != &shown ? 1 : 0;
        int below = 0;
        for (auto &sibling : each<&wlr_scene_node::link>(server.layers[0]->children)) {
            if (&sibling == &node)
                break;
            below++;
        }
        expect(below >= 1 && below <= 1 + others, name + " lies above nothing but the backdrop");
    }

    void check_window(vantore_toplevel &t)
    {
        const std::string name = "window " + std::to_string(t.id);
        expect(tl_mapped(t), name + " in the list is mapped");
        expect(times_listed(t) == 1, name + " is on exactly one workspace list");
        const bool has_workspace = expect(t.workspace != nullptr, name + " has a workspace");
        const bool is_in_scene = expect(t.scene_tree != nullptr, name + " is in the scene");
        if (!has_workspace || !is_in_scene)
            return;
        check_place(t, name);
        check_states(t, name);
        check_effects(t, name);
        if (t.kind == VNT_XWL)
            check_x11_window(t, name);
        else
            check_xdg_window(t, name);
    }

    void check_place(vantore_toplevel &t, const std::string &name)
    {
        const wlr_box box = toplevel_box(t);
        expect(t.scene_tree->node.parent == toplevel_parent_tree(t), name + " hangs where it belongs");
        expect(t.scene_tree->node.enabled == toplevel_is_enabled(t), name + " shows iff its state says so");
        expect(box.width >= 1 && box.height >= 1, name + " has a size");
        const vantore_toplevel *parent = tl_parent(t);
        expect(parent == nullptr || !is_listed(parent) || !hangs_below(t, *parent),
               name + " lies above the window whose dialog it is");
    }

    // False for windows of two trees.
    static bool hangs_below(const vantore_toplevel &t, const vantore_toplevel &other)
    {
        const wl_list &siblings = t.scene_tree->node.parent->children;
        const wl_list *at = t.scene_tree->node.link.next;
        while (at != &siblings && at != &other.scene_tree->node.link)
            at = at->next;
        return at != &siblings;
    }

    void check_states(const vantore_toplevel &t, const std::string &name)
    {
        const bool enabled = t.scene_tree->node.enabled;
        expect(t.fullscreen || !t.fs_demoted, name + " is demoted only while it is fullscreen");
        expect(!t.fullscreen || !enabled || t.workspace->output != nullptr,
               name + " is fullscreen only where its workspace is on show");
        expect(!t.minimized || !enabled || t.fullscreen, name + " is hidden while it is minimized");
    }

    void check_effects(const vantore_toplevel &t, const std::string &name)
    {
        const effect_plan plan = effects_of(t);
        const wlr_scene_buffer *buffer = toplevel_main_buffer(t);
        expect((t.shadow != nullptr && t.shadow->node.enabled) == plan.shadow, name + " has its shadow");
        expect((t.dim_rect != nullptr && t.dim_rect->node.enabled) == plan.dim,
               name + " is dark if it should be");
        expect(buffer == nullptr || fx_corner_radii_eq(buffer->corners, plan.surface),
               name + " has its corners");
        expect(fx_corner_radii_eq(t.titlebar->corners, plan.bar), name + "'s title bar has its corners");
    }

    void check_x11_window(const vantore_toplevel &t, const std::string &name)
    {
        expect(t.xwl->data == &t, name + "'s X window points back");
        expect(!t.xwl->override_redirect, name + " is to be managed");
        expect(!t.minimized || t.xwl->minimized, name + " was told that it is minimized");
        expect(toplevel_of(t.scene_tree->node) == &t, name + " is found by hit tests");
    }

    void check_xdg_window(const vantore_toplevel &t, const std::string &name)
    {
        expect(t.maximized == t.xdg_toplevel->scheduled.maximized, name + " knows whether it is maximized");
        expect(t.fullscreen == t.xdg_toplevel->scheduled.fullscreen,
               name + " knows whether it is fullscreen");
        const bool focused = server.seat->keyboard_state.focused_surface == tl_surface(t);
        const bool active = t.xdg_toplevel->scheduled.activated;
        expect(active || !focused, name + " is active when it has the keyboard");
        expect(!active || focused || active_windows == activity::may_lag, name + " is active only then");
    }

    void check_active()
    {
        int active = 0;
        for (const auto &t : each<&vantore_toplevel::link>(server.toplevels)) {
            active += t.kind == VNT_XDG && t.xdg_toplevel->scheduled.activated ? 1 : 0;
            expect(!t.minimized || server.seat->keyboard_state.focused_surface != tl_surface(t),
                   "window " + std::to_string(t.id) + " has no keyboard while it is minimized");
        }
        expect(active <= 1, "at most one window is active");
    }

    void check_unmanaged(const vantore_unmanaged &u)
    {
        const bool mapped = u.xwl->surface != nullptr && u.xwl->surface->mapped;
        expect(u.xwl->override_redirect, "an unmanaged window is not to be managed");
        expect(mapped == (u.scene_tree != nullptr), "an unmanaged window is in the scene iff it is mapped");
        if (u.scene_tree == nullptr)
            return;
        expect(u.scene_tree->node.parent == server.unmanaged, "an unmanaged window hangs in its tree");
        expect(u.scene_tree->node.data == nullptr, "an unmanaged window is not taken for a window");
    }

    void check_layer_surface(const vantore_layer_surface &l)
    {
        const wlr_layer_surface_v1 &surface = *l.layer_surface;
        const std::string name = std::string{"layer surface "} + surface.namespace_;
        expect(surface.data == &l, name + " points back");
        expect(output_of(server, surface.output) != nullptr, name + " is on an output that is there");
        const wlr_scene_tree *parent = l.scene->tree->node.parent;
        expect(surface.initialized ? parent == server.layers[surface.current.layer]
                                   : std::ranges::contains(server.layers, parent),
               name + " hangs in its layer");
        expect(tag_of(l.scene->tree->node) == &l.tag, name + " is known by its tag");
        const bool off = surface.output != nullptr && !surface.output->enabled; // told its size once it is on
        expect(!surface.surface->mapped || off || l.told_width > 0,
               name + " was told a size before it was shown");
    }

    [[nodiscard]] bool is_plugged(const vantore_output *o) const
    {
        for (const auto &other : each<&vantore_output::link>(server.outputs))
            if (&other == o)
                return true;
        return false;
    }

    [[nodiscard]] bool is_listed(const vantore_toplevel *t) const
    {
        for (const auto &other : each<&vantore_toplevel::link>(server.toplevels))
            if (&other == t)
                return true;
        return false;
    }

    [[nodiscard]] bool is_connected(const wl_client *wanted) const
    {
        bool found = false;
        wl_client *client = nullptr;
        wl_client_for_each(client, wl_display_get_client_list(server.display)) found |= client == wanted;
        return found;
    }

    // Whatever the server remembers from one event to the next must still exist and be mapped.
    void check_remembered()
    {
        const vantore_toplevel *grabbed = server.drag.grabbed_toplevel;
        const vantore_toplevel *hovered = server.pointing.hovered_toplevel;
        expect(grabbed == nullptr || is_listed(grabbed), "the window that is dragged is mapped");
        expect((grabbed != nullptr) == (server.drag.cursor_mode != VANTORE_CURSOR_PASSTHROUGH),
               "a window is dragged iff there is a drag");
        expect(grabbed == nullptr || !server.locked, "nothing is dragged while the session is locked");
        expect(hovered == nullptr || is_listed(hovered), "the window with the highlighted bar is mapped");
        const wlr_surface *focused = server.seat->keyboard_state.focused_surface;
        expect(focused == nullptr || is_connected(wl_resource_get_client(focused->resource)),
               "what has the keyboard belongs to a client that is there");
        const wlr_output *shown_on = server.tiler.mt_output;
        expect(shown_on == nullptr || output_of(server, shown_on) != nullptr,
               "the Mouse Tiler is on an output that is there");
        check_constraint();
        check_overview();
        check_capturing();
    }

    void check_capturing()
    {
        const vantore_capturing &c = server.capturing;
        bool connected = false;
        for (const auto &client : each<&vnt_ipc_client::link>(server.ipc.ipc_clients))
            connected |= &client == c.cap_sub.client;
        const bool subscribed = c.cap_sub.client != nullptr;
        expect(connected == subscribed, "who gets pictures of a window is connected");
        expect((c.cap_sub.wid != 0) == subscribed && (c.cap_sub.watch != nullptr) == subscribed,
               "a window is watched iff somebody gets its pictures");
        for (const locked_buffer &held : c.cap_sub.held)
            expect(held == nullptr || (subscribed && held->n_locks > 0), "pictures are held for somebody");
        expect((c.cap_sc != nullptr) == (c.cap_wid != 0), "buffers for pictures belong to a window");
    }

    void check_overview()
    {
        const vantore_overviewing &o = server.overview;
        expect((o.tree != nullptr) == (o.active || o.closing), "the overview has nodes iff it shows");
        expect(!o.active || !o.closing, "the overview that closes is not active");
        expect(o.tree == nullptr || !server.locked, "the overview does not show while the session is locked");
        expect((o.output != nullptr) == (o.tree != nullptr), "the overview is on an output iff it shows");
        expect(o.output == nullptr || is_plugged(o.output), "the overview's output is there");
        for (const overview_item &item : o.items)
            expect(is_listed(item.t), "each tile's window is mapped");
        expect(o.sel < int(o.items.size()) && o.press < int(o.items.size()), "the overview's tiles exist");
        expect(!o.drag || o.press >= 0, "the overview drags what was pressed");
    }

    void check_constraint()
    {
        const wlr_pointer_constraint_v1 *active = server.active_constraint;
        if (active == nullptr)
            return;
        bool listed = false;
        for (const auto &c : each<&wlr_pointer_constraint_v1::link>(server.pointer_constraints->constraints))
            listed |= &c == active;
        if (expect(listed, "the constraint in force exists"))
            expect(active->surface->mapped, "the constraint in force belongs to what is mapped");
    }

    void check_fullscreen_file()
    {
        const char *directory = getenv("XDG_RUNTIME_DIR");
        if (directory == nullptr)
            return;
        bool shown = false;
        for (const auto &t : each<&vantore_toplevel::link>(server.toplevels))
            shown |= t.fullscreen && t.scene_tree != nullptr && toplevel_visible(t);
        expect(std::filesystem::exists(std::filesystem::path{directory} / "vantore-fs") == shown,
               "the file vantore-fs exists iff a fullscreen window is visible");
    }

    [[nodiscard]] long times_listed(const vantore_toplevel &t) const
    {
        long times = 0;
        for (auto &ws : each<&vantore_workspace::link>(server.workspaces))
            for (auto &other : each<&vantore_toplevel::ws_link>(ws.toplevels))
                times += &other == &t ? 1 : 0;
        return times;
    }

    vantore_server &server;
    activity active_windows;
    std::vector<std::string> broken;
};

struct tile {
    const vantore_toplevel *window;
    wlr_box box; // bars included
};

// Without enough room, tiles are raised to a size of one pixel and may overlap their neighbours.
bool has_room(const wlr_box &usable)
{
    return usable.width > most_room && usable.height > most_room;
}

std::vector<tile> tiles_of(vantore_workspace &ws)
{
    std::vector<tile> tiles;
    for (auto &t : each<&vantore_toplevel::ws_link>(ws.toplevels)) {
        if (!tile_participates(t) ||
            (t.stack_id != 0 && stack_active_member(*ws.server, &ws, t.stack_id) != &t))
            continue;
        const int bar = t.stack_id != 0 ? tabbar_height : titlebar_of(t);
        const wlr_scene_node &node = t.scene_tree->node;
        tiles.push_back({&t, {node.x, node.y - bar, t.want_w, t.want_h + bar}});
    }
    return tiles;
}

void check_tiles(vantore_workspace &ws, std::vector<std::string> &broken)
{
    const wlr_box &usable = ws.output->usable;
    const std::vector<tile> tiles = tiles_of(ws);
    for (size_t i = 0; i < tiles.size(); i++) {
        const std::string name = "tile " + std::to_string(tiles[i].window->id);
        if (!tiles[i].window->scene_tree->node.enabled)
            broken.push_back(name + " shows");
        if (!lies_in(tiles[i].box, usable))
            broken.push_back(name + " lies in the usable box");
        for (size_t other = 0; other < i && ws.tile_mode != TM_MONOCLE; other++)
            if (boxes_overlap(tiles[i].box, tiles[other].box))
                broken.push_back(name + " leaves " + std::to_string(tiles[other].window->id) + " its place");
    }
}

} // namespace

std::vector<std::string> usable_check(vantore_server &server)
{
    std::vector<std::string> broken;
    for (auto &o : each<&vantore_output::link>(server.outputs))
        if (o.wlr_output->enabled && !lies_in(o.usable, output_layout_box(o)))
            broken.push_back(std::string{"the usable box lies on output "} + output_name(o.wlr_output));
    return broken;
}

std::vector<std::string> tiles_check(vantore_server &server)
{
    std::vector<std::string> broken;
    for (auto &ws : each<&vantore_workspace::link>(server.workspaces))
        if (ws.output != nullptr && ws.layout == VANTORE_LAYOUT_TILING && has_room(ws.output->usable))
            check_tiles(ws, broken);
    return broken;
}

std::vector<std::string> lookup_check(const vantore_server &server)
{
    if (server.sliding.from != nullptr) // the workspace that leaves takes no input
        return {};
    constexpr double step = 211.3; // large, because this check runs after every operation
    std::vector<std::string> broken;
    wlr_box layout{};
    wlr_output_layout_get_box(server.output_layout, nullptr, &layout);
    for (double x = layout.x; x < layout.x + layout.width; x += step)
        for (double y = layout.y; y < layout.y + layout.height; y += step)
            if (scene_node_at(server, x, y, nullptr, nullptr) !=
                wlr_scene_node_at(&server.scene->tree.node, x, y, nullptr, nullptr))
                broken.push_back("the node at " + std::to_string(x) + "," + std::to_string(y) + " is found");
    return broken;
}

static bool pointer_is_held(const vantore_server &server)
{
    const auto &state = server.seat->pointer_state;
    return server.drag.cursor_mode != VANTORE_CURSOR_PASSTHROUGH || pointer_is_locked(server) ||
           (state.button_count > 0 && state.focused_surface != nullptr) ||
           wlr_seat_pointer_has_grab(server.seat);
}

static const wlr_surface *surface_under_pointer(const vantore_server &server)
{
    const double x = server.cursor->x, y = server.cursor->y;
    surface_hit hit;
    const vantore_toplevel *t = desktop_toplevel_at(server, x, y, hit);
    if (server.overview.active)
        return nullptr;
    if (t == nullptr || server.locked)
        return hit.surface;
    const bool at_border = !hides_frames(hit.surface) && resize_edges_at(*t, x, y) != WLR_EDGE_NONE;
    const bool behind_overlay = t->fullscreen && !t->overlay_lift && overlay_lift_active(server);
    return at_border || behind_overlay ? nullptr : hit.surface;
}

static std::string described(const wlr_surface *surface)
{
    if (surface == nullptr)
        return "nothing";
    const char *role = surface->role != nullptr ? surface->role->name : "no role";
    return std::string{role} + ' ' + std::to_string(surface->current.width) + 'x' +
           std::to_string(surface->current.height) + (surface->mapped ? "" : " unmapped");
}

std::vector<std::string> pointer_check(vantore_server &server)
{
    const wlr_surface *in = server.seat->pointer_state.focused_surface,
                      *under = surface_under_pointer(server);
    if (server.pointing.look_again != nullptr || pointer_is_held(server) || in == under)
        return {};
    return {"a resting pointer is in what lies under it, not in " + described(in) + " but in " +
            described(under)};
}

std::vector<std::string> server_check(vantore_server &server, activity active_windows)
{
    return checker{server, active_windows}.run();
}

} // namespace test
