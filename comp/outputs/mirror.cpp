#include "mirror.hpp"

#include "../broadcast.hpp"
#include "../input/modes.hpp"
#include "../notify.hpp"
#include "../platform.hpp"
#include "../presentation/overlay.hpp"
#include "../server.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/workspace.hpp"
#include "identify.hpp"
#include "lookup.hpp"
#include "mirror_picture.hpp"
#include "mirror_pointer.hpp"
#include "output.hpp"
#include "rehome.hpp"
#include "wallpaper.hpp"

#include <utility>

static constexpr int64_t usual_period_ns = 16'000'000;

static bool shows_output(const vantore_output &o, const vantore_output &source)
{
    const mirror_source &shown = o.mirror.source;
    return o.mirror.mir_on && shown.mir_is_output && shown.mir_src_out == output_name(source.wlr_output);
}

// Whether the source shows the output, directly or through other mirrors. The walk ends because no mirror is
// ever begun that would show itself.
static bool leads_back(const vantore_output &source, const vantore_output &o)
{
    const vantore_output *at = &source;
    while (at != nullptr && at != &o)
        at = at->mirror.mir_on ? output_by_name(*o.server, at->mirror.source.mir_src_out) : nullptr;
    return at == &o;
}

static bool is_only_usual_screen(const vantore_output &o)
{
    for (const auto &other : each<&vantore_output::link>(o.server->outputs))
        if (&other != &o && is_usual_screen(other))
            return false;
    return is_usual_screen(o);
}

static void give_workspace_up(vantore_output &o)
{
    if (vantore_workspace *ws = std::exchange(o.current_ws, nullptr))
        ws->output = nullptr;
    show_workspaces(*o.server);
}

// Without memory, what is missing is not shown.
static void create_nodes(vantore_output &o)
{
    static constexpr float black[]{0, 0, 0, 1};
    vantore_mirror &m = o.mirror;
    const wlr_box box = output_layout_box(o);
    m.mir_tree = wlr_scene_tree_create(o.server->layers[ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY]);
    if (m.mir_tree == nullptr)
        return;
    wlr_scene_node_set_position(&m.mir_tree->node, box.x, box.y);
    m.mir_bg = wlr_scene_rect_create(m.mir_tree, box.width, box.height, black);
    m.mir_buf = wlr_scene_buffer_create(m.mir_tree, nullptr);
    if (m.mir_buf != nullptr)
        m.mir_buf->point_accepts_input = takes_no_input;
}

static void mirror_begin(vantore_output &o, mirror_source source)
{
    output_leaves(*o.server, o.wlr_output); // modes end there
    identify_output_leaves(o);
    mirror_disable(o, false);
    g_mirror_any++;
    g_output_mirror_count += source.mir_is_output ? 1 : 0;
    o.mirror.mir_on = true;
    o.mirror.source = std::move(source);
    give_workspace_up(o);
    wallpaper_show(o, false);
    create_nodes(o);
}

static void draw_now(vantore_output &o, int64_t now)
{
    o.mirror.mir_last_ns = now;
    o.mirror.late = false;
    mir_update(o);
}

static void mir_commit(void *data)
{
    auto &o = *static_cast<vantore_output *>(data);
    const int64_t now = g_platform.monotonic_ns();
    const int64_t least_gap = o.refresh_nsec < 1 ? usual_period_ns : o.refresh_nsec;
    if (!o.wlr_output->enabled)
        return;
    if (now - o.mirror.mir_last_ns < least_gap) {
        o.mirror.late = true;
        wlr_output_schedule_frame(o.wlr_output); // the next frame draws it
        return;
    }
    draw_now(o, now);
}

static void source_gone(vantore_output &o)
{
    mirror_disable(o, true);
    if (!o.server->shutting_down)
        settle_outputs(*o.server);
}

static void mir_surf_destroy(void *data)
{
    source_gone(*static_cast<vantore_output *>(data));
}

// A client may destroy its window and keep the surface.
static void window_ends(vantore_output &o, vantore_toplevel *t)
{
    if (o.mirror.source.mir_src_wid == t->id)
        source_gone(o);
}

static void show_window(vantore_output &o, const mirror_source &source)
{
    mirror_begin(o, source);
    listen<&vantore_output::mirrored_window_ends, window_ends>(o, o.server->window_ends);
    vantore_toplevel *t = toplevel_by_id(*o.server, source.mir_src_wid);
    if (wlr_surface *surface = t != nullptr ? tl_surface(*t) : nullptr)
        o.mirror.watch =
            surface_watch_create(*surface, {.new_picture = mir_commit, .gone = mir_surf_destroy}, &o);
    mir_update(o);
}

static void show_output(vantore_output &o, const mirror_source &source)
{
    mirror_begin(o, source);
    mir_update_output(o);
}

void mirror_enable(vantore_output &o, vantore_toplevel &t)
{
    if (o.current_ws != nullptr && t.workspace == o.current_ws)
        return config_notify("Can't mirror a window onto its own screen");
    if (is_only_usual_screen(o))
        return config_notify("Can't mirror on the only screen");
    show_window(o, {.mir_is_output = false, .mir_src_out = {}, .mir_src_wid = t.id});
    wlr_log(WLR_INFO, "output %s now mirroring window %u", output_name(o.wlr_output), t.id);
    ipc_broadcast(*o.server, VNT_EVT_OUTPUTS);
}

void mirror_enable_output(vantore_output &o, const vantore_output &src)
{
    if (leads_back(src, o))
        return config_notify("Can't mirror a screen onto itself");
    if (is_only_usual_screen(o))
        return config_notify("Can't mirror on the only screen");
    const char *name = src.wlr_output->name;
    show_output(o, {.mir_is_output = true, .mir_src_out = name != nullptr ? name : "", .mir_src_wid = 0});
    wlr_log(WLR_INFO, "output %s now mirroring screen %s", output_name(o.wlr_output),
            output_name(src.wlr_output));
    ipc_broadcast(*o.server, VNT_EVT_OUTPUTS);
}

void mirror_resume(vantore_output &o, const mirror_source &source)
{
    const vantore_output *src = output_by_name(*o.server, source.mir_src_out);
    if (source.mir_is_output && src != nullptr && !leads_back(*src, o))
        show_output(o, source);
    else if (toplevel_by_id(*o.server, source.mir_src_wid) != nullptr)
        show_window(o, source);
    else
        give_workspace_up(o); // a better one may be free now
}

// The caller gives it a workspace.
static void become_usual_screen(vantore_output &o)
{
    wallpaper_show(o, true);
    set_wallpaper(o, true, false);
    wlr_log(WLR_INFO, "output %s mirror off", output_name(o.wlr_output));
}

static void end_mirror(vantore_output &o)
{
    if (o.mirror.mir_tree != nullptr && !o.server->shutting_down) // the scene is gone then
        wlr_scene_node_destroy(&o.mirror.mir_tree->node);
    g_mirror_any--;
    g_output_mirror_count -= o.mirror.source.mir_is_output ? 1 : 0;
    unlisten(o.mirrored_window_ends);
    o.mirror = {};
}

void mirror_disable(vantore_output &o, bool restore)
{
    if (!o.mirror.mir_on)
        return;
    end_mirror(o);
    if (!restore || o.server->shutting_down)
        return;
    become_usual_screen(o);
    if (o.wlr_output->enabled)
        hand_workspace_to(o);
    ipc_broadcast(*o.server, VNT_EVT_OUTPUTS);
}

void mirror_drop_lost(vantore_server &server)
{
    for (auto &o : each<&vantore_output::link>(server.outputs)) {
        const mirror_source &source = o.mirror.source;
        if (o.mirror.mir_on && source.mir_is_output && output_by_name(server, source.mir_src_out) == nullptr)
            mirror_disable(o, true);
    }
}

void keep_one_desktop(vantore_server &server)
{
    if (g_mirror_any == 0)
        return;
    vantore_output *lit_mirror = nullptr;
    for (auto &o : each<&vantore_output::link>(server.outputs)) {
        if (shows_desktop(o))
            return;
        if (o.wlr_output->enabled)
            lit_mirror = &o;
    }
    if (lit_mirror == nullptr)
        return;
    end_mirror(*lit_mirror);
    become_usual_screen(*lit_mirror);
}

void mirror_refresh(vantore_output &o)
{
    if (!o.mirror.mir_on)
        return;
    if (o.mirror.source.mir_is_output)
        mir_update_output(o);
    else
        mir_update(o);
}

void mirror_before_paint(vantore_output &o)
{
    vantore_mirror &m = o.mirror;
    if (!m.mir_on)
        return;
    if (m.source.mir_is_output)
        mir_update_output(o);
    else if (m.late)
        draw_now(o, g_platform.monotonic_ns());
}

bool is_mirrored(const vantore_output &o)
{
    if (g_output_mirror_count > 0)
        for (const auto &other : each<&vantore_output::link>(o.server->outputs))
            if (shows_output(other, o))
                return true;
    return false;
}

void mirror_wake_for_source(const vantore_output &o)
{
    if (g_output_mirror_count == 0)
        return;
    for (const auto &other : each<&vantore_output::link>(o.server->outputs))
        if (&other != &o && shows_output(other, o) && other.mirror.seen != o.wlr_output->commit_seq)
            wlr_output_schedule_frame(other.wlr_output);
}

// Whether the mirror shows the pointer, or is to show it now.
static bool pointer_matters_to(const vantore_output &o)
{
    const vantore_mirror &m = o.mirror;
    const vantore_output *src = output_by_name(*o.server, m.source.mir_src_out);
    const bool is_shown = m.mir_cursor != nullptr && m.mir_cursor->node.enabled;
    return is_shown || (src != nullptr && has_pointer(*src));
}

void mirror_follow_pointer(const vantore_server &server)
{
    if (g_output_mirror_count == 0)
        return;
    for (const auto &o : each<&vantore_output::link>(server.outputs))
        if (o.mirror.mir_on && o.mirror.source.mir_is_output && pointer_matters_to(o))
            wlr_output_schedule_frame(o.wlr_output);
}
