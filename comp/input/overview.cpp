#include "overview.hpp"

#include "../config/settings.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../presentation/effects.hpp"
#include "../server.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/focus.hpp"
#include "../workspaces/workspace.hpp"
#include "modes.hpp"
#include "overview_display.hpp"
#include "overview_input.hpp"
#include "overview_strip.hpp"
#include "overview_zoom.hpp"
#include "pointer.hpp"
#include "resting_pointer.hpp"

#include <algorithm>
#include <utility>

static bool may_zoom(const vantore_server &server)
{
    return g_animations && fx_on() && server.anim_timer != nullptr;
}

static bool has_picture(const vantore_toplevel &t)
{
    const wlr_surface *surface = tl_surface(t);
    return !t.minimized && surface != nullptr && surface->buffer != nullptr;
}

static bool any_window_has_picture(vantore_server &server)
{
    for (const auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (has_picture(t))
            return true;
    return false;
}

static void destroy_tree(const vantore_overviewing &overview)
{
    if (overview.tree != nullptr)
        wlr_scene_node_destroy(&overview.tree->node);
}

static void overview_build(vantore_server &server, vantore_output &o)
{
    vantore_overviewing &overview = server.overview;
    overview_draw(server, o);
    if (overview.tree == nullptr)
        return overview_end(server);
    overview.active = true;
    clear_pointer_focus(server);
}

static void overview_enter(vantore_server &server)
{
    if (!g_overview_enabled || server.locked)
        return;
    vantore_output *o = output_at(server, server.cursor->x, server.cursor->y);
    if (o == nullptr || o->current_ws == nullptr || !any_window_has_picture(server))
        return;
    end_modes(server);
    const vantore_toplevel *focused = focused_toplevel(server);
    server.overview.prev_focus_id = focused != nullptr ? focused->id : 0;
    overview_build(server, *o);
    if (server.overview.active && may_zoom(server))
        overview_zoom_in(server);
}

void overview_toggle(vantore_server &server)
{
    if (server.overview.active)
        overview_exit(server);
    else
        overview_enter(server);
}

void overview_rebuild(vantore_server &server)
{
    vantore_overviewing &overview = server.overview;
    if (!overview.active)
        return;
    destroy_tree(overview);
    vantore_output &o = *overview.output;
    overview = {.swallowed_release = overview.swallowed_release, .prev_focus_id = overview.prev_focus_id};
    overview_build(server, o);
    if (overview.active)
        overview_hover(server);
}

// A window that was dragged to another workspace, or stayed on the one that the user has left, must not get
// what the user types.
static void give_focus_back(vantore_server &server)
{
    vantore_toplevel *t = toplevel_by_id(server, server.overview.prev_focus_id);
    if (t != nullptr && !t->minimized && output_showing(*t) != nullptr)
        focus_toplevel_ex(t, true);
    focus_top_if_hidden(server);
    if (focus_is_hidden(server))
        focus_clear(server);
}

void overview_exit(vantore_server &server)
{
    const vantore_overviewing &overview = server.overview;
    if (!overview.active)
        return;
    give_focus_back(server);
    if (may_zoom(server) && !overview.items.empty())
        overview_zoom_out(server);
    else
        overview_end(server);
}

void overview_free_input(vantore_server &server)
{
    vantore_overviewing &overview = server.overview;
    overview.active = false;
    if (std::exchange(overview.swallowed_release, false))
        keyboard_lift_keys(server.seat);
    pointer_look_again(server);
}

void overview_end(vantore_server &server)
{
    if (server.overview.active)
        overview_free_input(server);
    destroy_tree(server.overview);
    server.overview = {};
}

// The window is still mapped, so the tiles are drawn anew when it has left.
void overview_window_leaves(vantore_server &server, const vantore_toplevel &t)
{
    vantore_overviewing &overview = server.overview;
    overview.sel = overview.press = -1;
    overview.drag = false;
    const auto leaving = std::ranges::find(overview.items, &t, &overview_item::t);
    if (leaving == overview.items.end())
        return;
    if (leaving->node != nullptr)
        wlr_scene_node_destroy(&leaving->node->node);
    overview.items.erase(leaving);
}

void overview_window_left(vantore_server &server)
{
    const vantore_overviewing &overview = server.overview;
    if (!overview.active)
        return;
    if (overview.output->current_ws != nullptr &&
        overview_ws_has_windows(server, *overview.output->current_ws))
        overview_rebuild(server);
    else
        overview_exit(server);
}

void overview_output_leaves(vantore_server &server, const wlr_output *output)
{
    if (server.overview.output != nullptr && server.overview.output->wlr_output == output)
        overview_end(server);
}

void overview_output_changed(vantore_server &server, const vantore_output &o)
{
    if (server.overview.output == &o)
        overview_rebuild(server);
}
