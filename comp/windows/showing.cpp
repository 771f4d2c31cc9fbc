#include "showing.hpp"

#include "../input/resting_pointer.hpp"
#include "../server.hpp"
#include "../workspaces/stacks.hpp"
#include "../workspaces/tiles.hpp"
#include "../workspaces/workspace.hpp"
#include "stacking.hpp"
#include "toplevel.hpp"

// The pointer carries a window together with its dialogs, or it would cover them.
static bool is_carried(const vantore_toplevel &t)
{
    const vantore_drag &drag = t.server->drag;
    const vantore_toplevel *carried = drag.grabbed_toplevel;
    if (carried == nullptr || drag.cursor_mode != VANTORE_CURSOR_MOVE || t.fullscreen)
        return false;
    const bool takes_along =
        !carried->fullscreen && !carried->overlay_lift && carried->workspace == t.workspace;
    return &t == carried || (takes_along && is_dialog_of(t, *carried));
}

static bool hangs_above_panels(const vantore_toplevel &t)
{
    return t.fullscreen && !t.fs_demoted && !t.overlay_lift;
}

// A fullscreen window above the panels would cover its dialogs if they stayed among the windows.
static bool goes_with_fullscreen_window(const vantore_toplevel &t)
{
    const vantore_output *o = output_showing(t);
    return !t.fullscreen && o != nullptr && any_ancestor(t, [&](const vantore_toplevel &ancestor) {
        return hangs_above_panels(ancestor) && output_showing(ancestor) == o;
    });
}

wlr_scene_tree *toplevel_parent_tree(const vantore_toplevel &t)
{
    const vantore_server &server = *t.server;
    if (t.overlay_lift)
        return server.layers[ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY];
    if (hangs_above_panels(t) || goes_with_fullscreen_window(t))
        return server.fullscreen_tree;
    return t.workspace != nullptr && !is_carried(t) ? t.workspace->tree : server.toplevel_tree;
}

// Of the windows that share a tile, only the active one is shown: the one raised last. Null for no stack.
static const vantore_toplevel *active_of_stack(const vantore_toplevel &t)
{
    return t.stack_id != 0 ? stack_active_member(*t.server, t.workspace, t.stack_id) : nullptr;
}

// A fullscreen window may hang outside its workspace's tree, so hiding that tree does not hide the window.
static bool is_enabled(const vantore_toplevel &t, const vantore_toplevel *active)
{
    if (!tl_mapped(t))
        return false;
    if (t.fullscreen && t.workspace != nullptr)
        return t.workspace->output != nullptr && !t.put_away;
    const bool behind = t.stack_id != 0 && tile_participates(t) && active != &t;
    return !t.minimized && !behind;
}

bool toplevel_is_enabled(const vantore_toplevel &t)
{
    return is_enabled(t, active_of_stack(t));
}

// Hides the tabs when the window no longer holds the tile of its stack. Only render_tabbar shows them.
static void refresh_one(vantore_toplevel &t, const vantore_toplevel *active)
{
    wlr_scene_node &node = t.scene_tree->node;
    wlr_scene_tree *parent = toplevel_parent_tree(t);
    const bool enabled = is_enabled(t, active);
    const bool hides_tabs = t.tabbar->node.enabled && (!enabled || t.stack_id == 0 || !tile_participates(t));
    if (parent == node.parent && enabled == node.enabled && !hides_tabs)
        return;
    if (parent != node.parent) {
        wlr_scene_node_reparent(&node, parent); // to its top
        refresh_showing_of_dialogs(t);
        raise_dialogs(t);
    }
    wlr_scene_node_set_enabled(&node, enabled);
    if (hides_tabs)
        wlr_scene_node_set_enabled(&t.tabbar->node, false);
    pointer_look_again(*t.server);
}

void refresh_showing_alone(vantore_toplevel &t)
{
    if (t.scene_tree != nullptr)
        refresh_one(t, active_of_stack(t));
}

// Starts with the window that was raised first, because each one comes to the top of its new tree.
void refresh_showing_of_dialogs(const vantore_toplevel &t)
{
    const wl_list &windows = t.server->toplevels;
    for (wl_list *at = windows.prev; at != &windows; at = at->prev)
        if (auto &other = *owner_of<&vantore_toplevel::link>(at); is_dialog_of(other, t))
            refresh_showing_alone(other);
}

void refresh_showing(vantore_toplevel &t)
{
    if (t.scene_tree == nullptr)
        return;
    refresh_one(t, active_of_stack(t));
    if (t.stack_id == 0)
        return;
    for (auto &other : each<&vantore_toplevel::link>(t.server->toplevels))
        if (other.stack_id == t.stack_id) // it may have left another workspace, which now shows the next one
            refresh_one(other, active_of_stack(other));
}
