// Handles the life of an output, from the backend's announcement to its destruction.
//
// A dying output is taken apart in a fixed order. Our destroy listener runs before the scene's own, because
// it is attached before the scene output exists. It removes the scene output and the output's place in the
// layout before anything touches a scene node. Otherwise the scene would let surfaces enter the dying output
// again.

#include "output.hpp"
#include "lookup.hpp"

#include "../broadcast.hpp"
#include "../input/devices.hpp"
#include "../input/modes.hpp"
#include "../server.hpp"
#include "../session/state_files.hpp"
#include "../timer.hpp"
#include "../windows/fullscreen.hpp"
#include "../windows/layer.hpp"
#include "../windows/xwayland.hpp"
#include "../workspaces/arrange.hpp"
#include "../workspaces/focus.hpp"
#include "../workspaces/workspace.hpp"
#include "absent.hpp"
#include "displays.hpp"
#include "identify.hpp"
#include "mirror.hpp"
#include "output_mode.hpp"
#include "pacing.hpp"
#include "power.hpp"
#include "rehome.hpp"
#include "returning.hpp"
#include "wallpaper.hpp"

#include <ranges>
#include <vector>

static constexpr int reprobe_delay_ms = 500;

static timer_source g_reprobe_timer;

void outputs_rearranged(vantore_server &server)
{
    arrange_all_layers(server);
    for (auto &o : each<&vantore_output::link>(server.outputs)) {
        if (o.current_ws != nullptr)
            fit_fullscreen_windows(*o.current_ws);
        set_wallpaper(o, false, false);
        mirror_refresh(o);
    }
}

static void output_destroy(vantore_output &o)
{
    vantore_server &server = *o.server;
    const bool returns = !server.shutting_down && will_come_back(o);
    if (returns)
        remember_absent(o);
    if (o.wlr_output == server.virtual_output)
        server.virtual_output = nullptr;
    if (!server.shutting_down) { // the end of the session destroys the scene before the outputs
        output_leaves(server, o.wlr_output);
        identify_output_leaves(o);
        wallpaper_destroy(o);
        if (o.scene_output != nullptr)
            wlr_scene_output_destroy(o.scene_output);
        wlr_output_layout_remove(server.output_layout, o.wlr_output);
    }
    mirror_disable(o, false); // when the scene shows nothing on this output any more
    layer_surfaces_of_output_gone(server, o.wlr_output);
    if (o.current_ws != nullptr)
        o.current_ws->output = nullptr; // its windows stay on the workspace
    pacing_drop_measurement(o);
    delete &o;
    if (server.shutting_down)
        return;
    if (!returns)
        mirror_drop_lost(server);
    if (returns) {
        show_bound_workspaces(server);
        focus_top_if_hidden(server);
        return;
    }
    outputs_rearranged(server);
    rehome_outputs(server);
    displays_autoapply(server);
    keep_one_lit(server);
    settle_outputs(server);
}

static void output_request_state(vantore_output &o, const wlr_output_event_request_state *event)
{
    wlr_output_commit_state(o.wlr_output, event->state);
    outputs_rearranged(*o.server);
    ipc_broadcast(*o.server, VNT_EVT_OUTPUTS);
}

static void attach_listeners(vantore_output &o)
{
    auto &events = o.wlr_output->events;
    listen<&vantore_output::frame, output_frame>(o, events.frame);
    listen<&vantore_output::present, output_present>(o, events.present);
    listen<&vantore_output::request_state, output_request_state>(o, events.request_state);
    listen<&vantore_output::destroy, output_destroy>(o, events.destroy);
}

// Returns false if the layout or the scene can't hold another output.
static bool join_layout_and_scene(vantore_output &o)
{
    vantore_server &server = *o.server;
    wlr_output_layout_output *place = wlr_output_layout_add_auto(server.output_layout, o.wlr_output);
    o.scene_output = wlr_scene_output_create(server.scene, o.wlr_output);
    if (place == nullptr || o.scene_output == nullptr)
        return false;
    wlr_scene_output_layout_add_output(server.scene_layout, place, o.scene_output);
    o.usable = output_layout_box(o);
    return true;
}

void server_new_output(vantore_server &server, struct wlr_output *wlr_output)
{
    if (!wlr_output_init_render(wlr_output, server.allocator, server.renderer)) {
        wlr_log(WLR_ERROR, "vantore-comp: output %s can't be rendered to and stays dark",
                output_name(wlr_output));
        return;
    }
    const bool lit = !g_dpms_off && output_light_up(wlr_output);
    if (!lit)
        output_foresee_size(wlr_output);
    wlr_xcursor_manager_load(server.xcursor_mgr, wlr_output->scale);
    auto *o = new vantore_output{};
    o->wlr_output = wlr_output;
    o->server = &server;
    o->never_lit = !lit;
    pacing_start(*o);
    attach_listeners(*o);
    wl_list_insert(&server.outputs, &o->link);
    if (!join_layout_and_scene(*o)) {
        wlr_log(WLR_ERROR, "vantore-comp: output %s finds no place in the layout and is left out",
                output_name(wlr_output));
        output_destroy(*o);
        return;
    }
    const bool was_absent = output_returns(*o);
    if (!was_absent) {
        outputs_rearranged(server);
        hand_workspace_to(*o);
    }
    power_follow(*o);
    apply_touch_mapping(server);
    if (!was_absent)
        displays_autoapply(server);
    wlr_log(WLR_INFO, "output %s online", output_name(wlr_output));
    apply_x_primary(server);
    if (!was_absent) // nobody was told that the others had gone
        ipc_broadcast(server, VNT_EVT_OUTPUTS);
}

void outputs_file_follow(vantore_server &server, vnt_event event)
{
    if (event != VNT_EVT_OUTPUTS)
        return;
    std::vector<const char *> names;
    for (auto &o : each<&vantore_output::link>(server.outputs))
        names.push_back(o.wlr_output->name);
    for (const remembered_output &remembered : std::views::reverse(server.absence.outputs))
        if (remembered.absent)
            names.push_back(remembered.description.name.c_str());
    write_outputs_file(names);
}

static int startup_reprobe(void *data)
{
    auto *server = static_cast<vantore_server *>(data);
    wlr_log(WLR_INFO, "post-startup re-probe — %d output(s) connected", wl_list_length(&server->outputs));
    displays_autoapply(*server);
    return 0;
}

void startup_reprobe_arm(vantore_server &server)
{
    g_reprobe_timer = timer_create(server.display, startup_reprobe, &server);
    timer_arm(g_reprobe_timer, reprobe_delay_ms);
}

void startup_reprobe_cancel()
{
    g_reprobe_timer.reset();
}
