// One of the backend's outputs. Its record lives until the backend destroys the output.
#pragma once

#include "../events.hpp"
#include "../fwd.hpp"
#include "../records.hpp"
#include "../timer.hpp"
#include "mirroring.hpp"
#include "paint_time.hpp"
#include "wallpaper_shown.hpp"

struct vantore_output {
    list_link link; // server->outputs
    vantore_server *server = nullptr;
    struct wlr_output *wlr_output = nullptr;
    wlr_scene_output *scene_output = nullptr;
    bool never_lit = false; // it has no mode yet: all outputs were dark when it appeared, or it refused
    bool turned_off = false; // by the user alone: it stays dark when all outputs are turned on
    wlr_box usable{}; // free of panels, layout coordinates
    vantore_workspace *current_ws = nullptr; // current_ws->output points back; null for none
    timer_source frame_timer; // starts a delayed paint; null when it could not be made
    int64_t last_present_ns = 0; // 0 before the first presentation
    int64_t refresh_nsec = 0; // the period between two vertical blanks; 0 for unknown
    wlr_scene_timer rt{}; // measures a frame
    bool rt_pending = false; // rt holds a measurement
    render_times times;
    vantore_wallpaper wallpaper;
    vantore_mirror mirror; // while it is on, current_ws is null
    listener mirrored_window_ends;
    wlr_scene_buffer *ident_buf = nullptr; // the badge with its name, while that is shown
    listener frame, present, request_state, destroy;
};

// Handles the backend's new_output event.
void server_new_output(vantore_server &server, struct wlr_output *wlr_output);

// Receives broadcasts and keeps the outputs file current. It registers before the IPC socket does, so the
// file is current when other programs hear of a change.
void outputs_file_follow(vantore_server &server, vnt_event event);

// Call it when outputs have changed their sizes or places. Their neighbours then move too, so it places the
// layer surfaces, fullscreen windows and wallpapers of all outputs again.
void outputs_rearranged(vantore_server &server);

// Half a second after the start, logs the number of outputs and applies the saved arrangement that fits,
// because monitors may still appear just after the backend has started.
void startup_reprobe_arm(vantore_server &server);
void startup_reprobe_cancel();
