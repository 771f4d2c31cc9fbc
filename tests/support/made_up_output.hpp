// Outputs that tests plug in and out. They answer as the test wants: with modes, refusals, gamma and adaptive
// sync. They keep the last committed buffer, so a test can look at the picture.
#pragma once

#include "made_up_input.hpp"
#include "wlr.hpp"

#include <functional>
#include <list>
#include <string>
#include <vector>

extern "C" {
#include <wlr/backend/interface.h>
#include <wlr/interfaces/wlr_output.h>
}

namespace test
{

struct mode {
    int width, height;
    int refresh_mhz = 60000;
    bool preferred = false;
};

struct output_traits {
    std::string name = "A";
    int width = 0, height = 0; // before any mode is set
    std::vector<mode> modes;
    std::string serial; // empty for a display that does not tell
    size_t gamma_size = 0;
    bool has_cursor_plane = false; // takes cursor images of any size
    // Decides about every state that is tested or committed.
    std::function<bool(const wlr_output_state &)> accepts = [](const wlr_output_state &) { return true; };
};

struct made_up_backend;

struct made_up_output {
    wlr_output base{};
    made_up_backend *backend = nullptr;
    output_traits traits;
    std::list<wlr_output_mode> modes;
    wl_event_source *vblank = nullptr; // armed by each commit that shows something
    wlr_buffer *shown = nullptr; // locked
    wlr_buffer *cursor = nullptr; // locked; the image on the cursor plane
    int commits = 0; // only those that were accepted
    int power_offs = 0;
    bool adaptive_sync = false;
    bool gamma_set = false;
};

struct made_up_backend {
    wlr_backend base{};
    wl_event_loop *loop = nullptr;
    std::list<made_up_output> outputs;
    made_up_devices devices;
};

// The multi-backend that it is added to owns it.
made_up_backend *made_up_backend_create(wl_event_loop *loop);

// Announces a new output. The backend owns it until it is unplugged.
made_up_output &plug_in(made_up_backend &backend, output_traits traits);
void unplug(made_up_output &output);
// Requests a size, as a nested session does when its window is resized.
void request_size(made_up_output &output, int width, int height);

// Announces a device that belongs to the backend.
void announce_device(made_up_backend &backend, wlr_input_device &device);

// Returns the record of a wlr_output that plug_in made.
made_up_output &made_up(wlr_output *output);

} // namespace test
