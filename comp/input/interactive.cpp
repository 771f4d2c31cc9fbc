#include "interactive.hpp"

#include "../config/settings.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../presentation/decorations.hpp"
#include "../presentation/effects.hpp"
#include "../server.hpp"
#include "../windows/showing.hpp"
#include "../windows/stacking.hpp"
#include "../windows/states.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/arrange.hpp"
#include "../workspaces/stacks.hpp"
#include "../workspaces/tiles.hpp"
#include "../workspaces/workspace.hpp"
#include "drag_release.hpp"
#include "mouse_tiler.hpp"
#include "pointer.hpp"
#include "resting_pointer.hpp"

#include <algorithm>
#include <utility>

static constexpr int least_width = 120, least_height = 40;
static constexpr double tiler_distance_squared = 1600; // 40 pixels

static bool is_on_tiling_workspace(const vantore_toplevel &t)
{
    return t.workspace != nullptr && t.workspace->layout == VANTORE_LAYOUT_TILING;
}

// Returns the size before the window was snapped or maximized. A side that is not known keeps its present
// length.
static wlr_box size_before_snap(const vantore_toplevel &t)
{
    const wlr_box &before = t.snapped ? t.snap_geo : t.saved_geo;
    const wlr_box now = tl_get_geometry(t);
    return {.width = before.width > 0 ? before.width : now.width,
            .height = before.height > 0 ? before.height : now.height};
}

static void clear_maximized(vantore_toplevel &t)
{
    if (!t.maximized)
        return;
    t.maximized = false;
    dec_refresh_max_button(t);
    tl_set_maximized(t, false);
}

// Returns the window to its earlier size. The pointer stays at the same fraction of the width, at the top
// edge of the title bar.
static void unsnap(vantore_toplevel &t)
{
    const wlr_cursor &cursor = *t.server->cursor;
    const wlr_box now = toplevel_box(t);
    const double fraction = now.width > 0 ? (cursor.x - now.x) / now.width : 0.5;
    if (is_on_tiling_workspace(t))
        t.floating = true;
    const wlr_box size = size_before_snap(t);
    clear_maximized(t);
    tl_set_tiled(t, false);
    tl_place(
        t, {int(cursor.x - size.width * fraction), int(cursor.y) + titlebar_of(t), size.width, size.height});
    t.snapped = false;
    effects_layout(t);
    remember_as_floating(t, size.width, size.height);
}

static void begin_move(vantore_toplevel &t)
{
    vantore_server &server = *t.server;
    if ((t.snapped || t.maximized) && !t.fullscreen)
        unsnap(t);
    const wlr_scene_node &node = t.scene_tree->node;
    server.drag.grab_start_x = server.cursor->x;
    server.drag.grab_start_y = server.cursor->y;
    server.drag.grab_x = server.cursor->x - node.x;
    server.drag.grab_y = server.cursor->y - node.y;
    if (t.fullscreen || t.overlay_lift)
        return;
    refresh_showing(t);
    refresh_showing_of_dialogs(t);
    raise_with_dialogs(t);
}

// Returns the window geometry in layout coordinates, including its offset in the surface.
static wlr_box offset_box(const vantore_toplevel &t)
{
    wlr_box box = tl_get_geometry(t);
    box.x += t.scene_tree->node.x;
    box.y += t.scene_tree->node.y;
    return box;
}

static void begin_resize(vantore_toplevel &t, uint32_t edges)
{
    vantore_server &server = *t.server;
    clear_maximized(t);
    const wlr_box box = offset_box(t);
    const int border_x = (edges & WLR_EDGE_RIGHT) != 0 ? box.x + box.width : box.x;
    const int border_y = (edges & WLR_EDGE_BOTTOM) != 0 ? box.y + box.height : box.y;
    server.drag.grab_x = server.cursor->x - border_x;
    server.drag.grab_y = server.cursor->y - border_y;
    server.drag.grab_geobox = box;
    server.drag.resize_edges = edges;
}

void return_to_tile(const vantore_toplevel &t)
{
    if (tile_participates(t))
        arrange_workspace(t.workspace);
}

// A client may ask for a drag while another window is dragged. The other window is put back below the new
// one.
static void let_go_of_other(vantore_toplevel &t)
{
    vantore_drag &drag = t.server->drag;
    const bool moved = drag.cursor_mode == VANTORE_CURSOR_MOVE;
    vantore_toplevel *other = std::exchange(drag.grabbed_toplevel, nullptr);
    if (other == nullptr)
        return;
    return_to_tile(*other);
    if (!moved)
        return;
    restore_toplevel_parent(*other);
    raise_with_dialogs(t);
}

void begin_interactive(vantore_toplevel &t, vantore_cursor_mode mode, uint32_t edges)
{
    if (t.server->overview.active) // it would keep the release from the drag
        return;
    let_go_of_other(t);
    t.server->drag.grabbed_toplevel = &t;
    t.server->drag.cursor_mode = mode;
    if (mode == VANTORE_CURSOR_MOVE)
        begin_move(t);
    else
        begin_resize(t, edges);
}

void begin_requested_drag(vantore_toplevel &t, vantore_cursor_mode mode, uint32_t edges)
{
    clear_pointer_focus(*t.server);
    begin_interactive(t, mode, edges);
}

void reset_cursor_mode(vantore_server &server)
{
    server.drag.cursor_mode = VANTORE_CURSOR_PASSTHROUGH;
    server.drag.grabbed_toplevel = nullptr;
    mt_hide(server);
    wlr_scene_node_set_enabled(&server.drag_hint->node, false);
    wlr_scene_node_set_enabled(&server.snap_preview->node, false);
    pointer_look_again(server);
}

void drag_end(vantore_server &server)
{
    vantore_toplevel *t = server.drag.grabbed_toplevel;
    const bool moved = server.drag.cursor_mode == VANTORE_CURSOR_MOVE;
    reset_cursor_mode(server);
    if (t == nullptr)
        return;
    return_to_tile(*t);
    if (!moved)
        return;
    restore_toplevel_parent(*t);
    if (!toplevel_is_tiled(*t) && !t->fullscreen)
        join_output_under_cursor(*t);
}

bool join_output_under_cursor(vantore_toplevel &t)
{
    const vantore_output *o = current_output(*t.server);
    if (o == nullptr || o->current_ws == nullptr || o->current_ws == t.workspace)
        return false;
    toplevel_set_workspace(t, o->current_ws);
    t.float_geo = toplevel_box(t);
    return true;
}

void drag_window_leaves(vantore_server &server, const vantore_toplevel &t)
{
    if (&t != server.drag.grabbed_toplevel)
        return;
    reset_cursor_mode(server);
    refresh_showing_of_dialogs(t);
}

static void show_box(wlr_scene_rect *rect, const wlr_box &box)
{
    wlr_scene_node_set_position(&rect->node, box.x, box.y);
    wlr_scene_rect_set_size(rect, box.width, box.height);
    wlr_scene_node_set_enabled(&rect->node, true);
}

static void preview_edge_snap(vantore_server &server, const vantore_toplevel &t)
{
    wlr_box box{};
    const bool snaps = !t.fullscreen && snap_zone_for(usable_at_cursor(server), server.cursor->x,
                                                      server.cursor->y, box) != SNAP_NONE;
    if (snaps)
        show_box(server.snap_preview, box);
    else
        wlr_scene_node_set_enabled(&server.snap_preview->node, false);
}

static void raise_tiler(vantore_server &server)
{
    const double dx = server.cursor->x - server.drag.grab_start_x;
    const double dy = server.cursor->y - server.drag.grab_start_y;
    if (!server.tiler.mt_visible && dx * dx + dy * dy <= tiler_distance_squared)
        return;
    if (!server.tiler.mt_visible)
        mt_show(server);
    mt_update(server);
}

static void hint_at_drop(vantore_server &server, const vantore_toplevel &t)
{
    const drop_target target = toplevel_is_tiled(t) && !t.fullscreen
                                   ? drop_target_at(t, server.cursor->x, server.cursor->y)
                                   : drop_target{};
    if (target.tile == nullptr)
        return wlr_scene_node_set_enabled(&server.drag_hint->node, false);
    show_box(server.drag_hint, zone_hint_box(tile_frame(*target.tile), target.zone));
}

void process_cursor_move(vantore_server &server)
{
    vantore_toplevel *t = server.drag.grabbed_toplevel;
    if (t == nullptr)
        return;
    tl_move(*t, int(server.cursor->x - server.drag.grab_x), int(server.cursor->y - server.drag.grab_y));
    if (!g_tiler)
        preview_edge_snap(server, *t);
    else if (!t->fullscreen && !toplevel_is_tiled(*t))
        raise_tiler(server);
    hint_at_drop(server, *t);
}

void process_cursor_resize(vantore_server &server)
{
    vantore_toplevel *t = server.drag.grabbed_toplevel;
    if (t == nullptr)
        return;
    const wlr_box least = tl_least_size(*t);
    const wlr_box box = resized(server.drag.grab_geobox, server.drag.resize_edges,
                                server.cursor->x - server.drag.grab_x, server.cursor->y - server.drag.grab_y,
                                std::max(least_width, least.width), std::max(least_height, least.height));
    const wlr_box geometry = tl_get_geometry(*t);
    tl_place(*t, {box.x - geometry.x, box.y - geometry.y, box.width, box.height});
    if (!toplevel_is_tiled(*t) || t->fullscreen)
        remember_as_floating(*t, geometry.width, geometry.height);
}

void snap_apply_box(vantore_toplevel &t, const wlr_box &box)
{
    const int bar = titlebar_of(t);
    tl_set_tiled(t, true);
    tl_place(t, {box.x, box.y + bar, box.width, std::max(box.height - bar, 1)});
}

void snap_window(vantore_toplevel &t, const wlr_box &box)
{
    t.snap_geo = toplevel_box(t);
    if (is_on_tiling_workspace(t))
        t.floating = true;
    clear_maximized(t);
    snap_apply_box(t, box);
    t.snapped = true;
    effects_layout(t);
    const wlr_box now = toplevel_box(t);
    remember_as_floating(t, now.width, now.height);
}

void hold_resize_anchor(vantore_toplevel &t)
{
    const vantore_server &server = *t.server;
    if (&t != server.drag.grabbed_toplevel || server.drag.cursor_mode != VANTORE_CURSOR_RESIZE)
        return;
    const wlr_box &start = server.drag.grab_geobox;
    const wlr_box geometry = tl_get_geometry(t);
    int x = t.scene_tree->node.x, y = t.scene_tree->node.y;
    if ((server.drag.resize_edges & WLR_EDGE_LEFT) != 0)
        x = start.x + start.width - geometry.x - geometry.width;
    if ((server.drag.resize_edges & WLR_EDGE_TOP) != 0)
        y = start.y + start.height - geometry.y - geometry.height;
    tl_move(t, x, y);
}
