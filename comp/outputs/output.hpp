// One output of the backend, for as long as the backend keeps it.
#pragma once

#include "../events.hpp"
#include "../fwd.hpp"
#include "../records.hpp"
#include "../timer.hpp"
#include "paint_time.hpp"

struct vantore_output {
    list_link link; // server->outputs
    vantore_server *server = nullptr;
    struct wlr_output *wlr_output = nullptr;
    wlr_scene_output *scene_output = nullptr;
    wlr_box usable{}; // free of panels, layout coordinates
    vantore_workspace *current_ws = nullptr; // current_ws->output points back; null for none
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

// A receiver of broadcasts: keeps the outputs file current, so that it is when other programs hear of a
// change.
void outputs_file_follow(vantore_server &server, vnt_event event);

// Outputs have changed their sizes or places, which moves their neighbours: layer surfaces and fullscreen
// windows follow on all of them.
void outputs_rearranged(vantore_server &server);

// Tells how many outputs there are shortly after the start: monitors may still appear just after the
// backend has started.
void startup_reprobe_arm(vantore_server &server);
void startup_reprobe_cancel();
