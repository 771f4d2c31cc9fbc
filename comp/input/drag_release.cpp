#include "drag_release.hpp"

#include "../broadcast.hpp"
#include "../config/settings.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../presentation/effects.hpp"
#include "../server.hpp"
#include "../windows/states.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/arrange.hpp"
#include "../workspaces/focus.hpp"
#include "../workspaces/stacks.hpp"
#include "../workspaces/tiles.hpp"
#include "../workspaces/workspace.hpp"
#include "hit_test.hpp"
#include "interactive.hpp"
#include "mouse_tiler.hpp"

static constexpr double moved_distance_squared = 64; // 8 pixels: less is a click

// The state of a drag when it ends.
struct ended_drag {
    vantore_toplevel *t;
    bool was_move;
    bool tiler_was_up;
    int zone, workspace_tile;
    bool moved;
};

static bool has_moved(const vantore_server &server)
{
    const double dx = server.cursor->x - server.drag.grab_start_x;
    const double dy = server.cursor->y - server.drag.grab_start_y;
    return dx * dx + dy * dy > moved_distance_squared;
}

static void settle_where_it_is(vantore_toplevel &t)
{
    focus_toplevel_ex(&t, true);
    ipc_broadcast(*t.server, VNT_EVT_WINDOWS);
}

// Returns true when the window has landed and nothing else remains to be done with it.
static bool land_by_tiler(vantore_server &server, const ended_drag &drag)
{
    if (!drag.tiler_was_up || drag.t->fullscreen)
        return false;
    if (mt_apply(server, *drag.t, drag.zone, drag.workspace_tile)) {
        settle_where_it_is(*drag.t);
        return true;
    }
    drag.t->snapped = false;
    return false;
}

static bool land_at_edge(vantore_server &server, const ended_drag &drag)
{
    vantore_toplevel &t = *drag.t;
    if (!drag.moved || t.fullscreen)
        return false;
    wlr_box box{};
    if (snap_zone_for(usable_at_cursor(server), server.cursor->x, server.cursor->y, box) == SNAP_NONE) {
        t.snapped = false;
        return false;
    }
    snap_window(t, box);
    arrange_workspace(t.workspace);
    settle_where_it_is(t);
    return true;
}

static void insert_beside(vantore_toplevel &t, vantore_toplevel &target, drop_zone zone)
{
    if (zone == DROP_AFTER)
        move_to_front(target.ws_link, t.ws_link);
    else
        move_to_back(target.ws_link, t.ws_link);
}

static void swap_tiles(vantore_toplevel &t, vantore_toplevel &target)
{
    wl_list *before_target = target.ws_link.prev;
    if (before_target == &t.ws_link) { // t stands right before it
        move_to_front(target.ws_link, t.ws_link);
        return;
    }
    move_to_front(t.ws_link, target.ws_link);
    move_to_front(*before_target, t.ws_link);
}

drop_target drop_target_at(const vantore_toplevel &dragged, double x, double y)
{
    if (const vantore_toplevel *tab = tab_at(*dragged.server, x, y, &dragged))
        return {.tile = stack_active_member(*dragged.server, tab->workspace, tab->stack_id),
                .zone = DROP_STACK};
    vantore_toplevel *tile = tile_at(dragged.workspace, x, y, &dragged);
    return {.tile = tile, .zone = tile != nullptr ? zone_at(tile_frame(*tile), x, y) : DROP_SWAP};
}

static void drop_on_tile(vantore_toplevel &t)
{
    const drop_target target = drop_target_at(t, t.server->cursor->x, t.server->cursor->y);
    if (target.tile == nullptr)
        return;
    if (target.zone == DROP_STACK) {
        stack_join(t, *target.tile);
        return;
    }
    stack_leave(t);
    if (target.zone == DROP_SWAP)
        swap_tiles(t, *target.tile);
    else
        insert_beside(t, *target.tile, target.zone);
}

static void drop(const ended_drag &drag)
{
    vantore_toplevel &t = *drag.t;
    if (t.fullscreen)
        return;
    if (toplevel_is_tiled(t)) {
        drop_on_tile(t);
        arrange_workspace(t.workspace);
        ipc_broadcast(*t.server, VNT_EVT_WORKSPACES);
    } else if (drag.moved) {
        if (join_output_under_cursor(t))
            settle_where_it_is(t);
    }
}

void finish_drag(vantore_server &server)
{
    const ended_drag drag{
        .t = server.drag.grabbed_toplevel,
        .was_move = server.drag.cursor_mode == VANTORE_CURSOR_MOVE,
        .tiler_was_up = server.tiler.mt_visible,
        .zone = server.tiler.mt_zone,
        .workspace_tile = server.tiler.mt_ws,
        .moved = has_moved(server),
    };
    reset_cursor_mode(server);
    if (drag.t == nullptr)
        return;
    if (!drag.was_move)
        return return_to_tile(*drag.t);
    const bool landed = g_tiler ? land_by_tiler(server, drag) : land_at_edge(server, drag);
    if (!landed)
        drop(drag);
    restore_toplevel_parent(*drag.t);
    effects_layout(*drag.t); // it may have been snapped or no longer be
}
