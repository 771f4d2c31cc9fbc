// One output of the backend, for as long as the backend keeps it.
#pragma once

#include "../fwd.hpp"
#include "../records.hpp"
#include "../timer.hpp"
#include "paint_time.hpp"

#include <array>
#include <string_view>

struct vantore_output {
    list_link link; // server->outputs
    vantore_server *server = nullptr;
    struct wlr_output *wlr_output = nullptr;
    wlr_scene_output *scene_output = nullptr;
    wlr_box usable{}; // free of panels, layout coordinates
    vantore_workspace *current_ws = nullptr; // current_ws->output points back; null for none
    bool mir_on = false; // shows what an output or a window shows
    bool mir_is_output = false; // what it mirrors is an output
    std::array<char, 64> mir_src_out{}; // name of that output
    uint32_t mir_src_wid = 0; // id of that window
    timer_source frame_timer; // paints late; null when it could not be made
    int64_t last_present_ns = 0; // 0 before the first presentation
    int64_t refresh_nsec = 0; // the period between two vertical blanks; 0 for unknown
    wlr_scene_timer rt{}; // measures a frame
    bool rt_pending = false; // rt holds a measurement
    render_times times;
    listener frame, present, request_state, destroy;
};

// Handler of the backend's new_output event.
void server_new_output(vantore_server &server, struct wlr_output *wlr_output);

// The first output of exactly this name, or null.
vantore_output *output_by_name(vantore_server &server, std::string_view name);
// The record of a wlr_output, or null when it has none.
vantore_output *output_of(vantore_server &server, const struct wlr_output *wlr_output);
// The output that comes first where only one is wanted: the newest enabled one, or null.
vantore_output *resolve_primary_output(vantore_server &server);
int outputs_enabled_count(vantore_server &server);

// For messages: never null.
const char *output_name(const struct wlr_output *wlr_output);

// The whole output in layout coordinates; all zero when it is not in the layout.
wlr_box output_layout_box(const vantore_output &o);

// Outputs have changed their sizes or places, which moves their neighbours: layer surfaces and fullscreen
// windows follow on all of them.
void outputs_rearranged(vantore_server &server);

// Tells how many outputs there are shortly after the start: monitors may still appear just after the
// backend has started.
void startup_reprobe_arm(vantore_server &server);
void startup_reprobe_cancel();
