// A fullscreen window hangs above the panels until another window on its output gets the focus. It is then
// demoted: it keeps its size and its state and hangs among the windows of its workspace, until it is focused
// again.

#include "fullscreen.hpp"

#include "../broadcast.hpp"
#include "../clock.hpp"
#include "../config/settings.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../presentation/decorations.hpp"
#include "../presentation/open_fade.hpp"
#include "../server.hpp"
#include "../text.hpp"
#include "../timer.hpp"
#include "../visibility.hpp"
#include "../workspaces/arrange.hpp"
#include "../workspaces/tiles.hpp"
#include "../workspaces/workspace.hpp"
#include "maximized.hpp"
#include "placement.hpp"
#include "showing.hpp"
#include "states.hpp"
#include "toplevel.hpp"
#include "unmanaged.hpp"

static constexpr int bg_frame_ms = 16;

static timer_source g_bg_frame_timer;

// An X11 client can't ask for an output, but the user can name one for games.
static vantore_output *requested_output(const vantore_toplevel &t)
{
    vantore_output *o = nullptr;
    if (t.kind == VNT_XWL)
        o = output_by_name(*t.server, text_of(g_game_output));
    else if (const wlr_output *wanted = t.xdg_toplevel->requested.fullscreen_output)
        o = output_of(*t.server, wanted);
    return o != nullptr && shows_desktop(*o) ? o : nullptr;
}

// A float that was dragged to another output fills that output. A window whose workspace is not shown lies on
// no output, whatever its box says.
static vantore_output *output_below(const vantore_toplevel &t)
{
    const wlr_box box = toplevel_box(t);
    if (output_showing(t) == nullptr || toplevel_is_tiled(t) || box.width < 2 || box.height < 2)
        return nullptr;
    vantore_output *o = output_at(*t.server, box.x + box.width / 2.0, box.y + box.height / 2.0);
    return o != nullptr && is_usual_screen(*o) ? o : nullptr;
}

static vantore_output *output_to_fill(vantore_toplevel &t)
{
    if (vantore_output *o = requested_output(t))
        return o;
    if (vantore_output *o = output_below(t)) {
        toplevel_set_workspace(t, o->current_ws);
        return o;
    }
    if (vantore_output *o = output_showing(t))
        return o;
    return current_output(*t.server);
}

static void apply_new_state(vantore_toplevel &t, const wlr_box &box)
{
    refresh_showing(t);
    tl_place(t, box);
    t.want_w = t.want_h = 0; // what a tile is to have only the arrangement says
    tl_set_fullscreen_state(t, t.fullscreen);
    dec_layout(t);
    arrange_workspace(t.workspace);
    ipc_broadcast(*t.server, VNT_EVT_WINDOWS);
    visible_changed(*t.server);
}

static void enter_fullscreen(vantore_toplevel &t)
{
    t.saved_geo = box_to_return_to(t);
    const vantore_output *o = output_to_fill(t);
    if (o == nullptr)
        return;
    t.fullscreen = true;
    t.fs_demoted = false;
    anim_open_end(t);
    const bool was_hidden_tab = t.stack_id != 0 && !t.scene_tree->node.enabled;
    t.put_away = t.minimized || was_hidden_tab; // its client may ask for it at any time
    apply_new_state(t, output_layout_box(*o));
}

static void leave_fullscreen(vantore_toplevel &t)
{
    t.fullscreen = t.fs_demoted = false;
    apply_new_state(t, t.saved_geo);
    fit_maximized(t); // panels or outputs may have changed meanwhile
}

void toplevel_set_fullscreen(vantore_toplevel &t, bool fs)
{
    if (fs == t.fullscreen)
        return;
    if (fs)
        enter_fullscreen(t);
    else
        leave_fullscreen(t);
}

void enforce_fullscreen_pos(vantore_toplevel &t)
{
    const vantore_output *o = output_showing(t);
    if (!t.fullscreen || o == nullptr)
        return;
    const wlr_box screen = output_layout_box(*o);
    const wlr_scene_node &node = t.scene_tree->node;
    if (node.x != screen.x || node.y != screen.y)
        tl_move(t, screen.x, screen.y);
    refresh_showing_alone(t);
}

static void fit(vantore_toplevel &t)
{
    const vantore_output *o = output_showing(t);
    const wlr_box screen = o != nullptr ? output_layout_box(*o) : wlr_box{};
    if (!t.fullscreen || !tl_mapped(t) || screen.width < 1 || screen.height < 1)
        return;
    refresh_showing(t);
    tl_place(t, screen);
}

void fit_fullscreen_windows(vantore_workspace &ws)
{
    for (auto &t : each<&vantore_toplevel::ws_link>(ws.toplevels))
        fit(t);
}

void settle_fullscreen(vantore_toplevel &t)
{
    if (!t.fullscreen || t.workspace == nullptr)
        return;
    t.put_away = false;
    refresh_showing(t);
    fit(t);
    visible_changed(*t.server);
}

static void promote(vantore_toplevel &t)
{
    if (!t.fs_demoted)
        return;
    t.fs_demoted = false;
    refresh_showing(t);
}

static void demote(vantore_toplevel &t)
{
    if (t.fs_demoted)
        return;
    t.fs_demoted = true;
    refresh_showing(t);
    bg_frame_timer_kick(*t.server);
}

void refresh_fullscreen_stacking(vantore_server &server, vantore_toplevel &focused)
{
    if (focused.overlay_lift)
        return;
    const vantore_output *o = output_showing(focused);
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels)) {
        if (!t.fullscreen)
            continue;
        if (&t == &focused)
            promote(t);
        else if (o != nullptr && output_showing(t) == o)
            demote(t);
    }
}

bool fills_output(const vantore_toplevel &t, const wlr_box &size)
{
    const vantore_output *o = output_showing(t);
    return o != nullptr && fills(size, output_layout_box(*o));
}

bool covers_output(const vantore_toplevel &t)
{
    return fills_output(t, tl_get_geometry(t));
}

bool focused_is_fullscreen(vantore_server &server)
{
    const wlr_surface *focused =
        server.seat != nullptr ? server.seat->keyboard_state.focused_surface : nullptr;
    if (focused == nullptr)
        return false;
    for (const auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (tl_surface(t) == focused)
            return t.fullscreen || covers_output(t);
    return unmanaged_covers_output(server, focused);
}

const vantore_toplevel *shown_fullscreen_window(vantore_server &server)
{
    for (const auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (t.fullscreen && toplevel_visible(t))
            return &t;
    return nullptr;
}

static int bg_frame_tick(void *data)
{
    auto &server = *static_cast<vantore_server *>(data);
    const timespec now = mono_timespec();
    bool served = false;
    for (const auto &t : each<&vantore_toplevel::link>(server.toplevels)) {
        if (!t.fullscreen || !t.fs_demoted || !tl_mapped(t))
            continue;
        wlr_surface_send_frame_done(tl_surface(t), &now);
        served = true;
    }
    if (served)
        timer_arm(g_bg_frame_timer, bg_frame_ms);
    return 0;
}

void bg_frame_timer_kick(vantore_server &server)
{
    if (g_bg_frame_timer == nullptr)
        g_bg_frame_timer = timer_create(server.display, bg_frame_tick, &server);
    timer_arm(g_bg_frame_timer, bg_frame_ms);
}

void bg_frame_timer_drop()
{
    g_bg_frame_timer.reset();
}
