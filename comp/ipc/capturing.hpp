// Which window is captured in graphics memory, and the buffers that were handed out.
#pragma once

#include "../fwd.hpp"
#include "../handles.hpp"
#include "../records.hpp"
#include "../surface_watch.hpp"

#include <array>

// Pushes a window's pictures to one client.
struct vantore_capture_subscription {
    vnt_ipc_client *client = nullptr; // null without a subscription
    uint32_t wid = 0; // the window's id
    int64_t min_gap_ns = 0; // the least time between two pushes
    int64_t last_push_ns = 0; // when the last push went out
    uint32_t seq = 0; // the number of the next picture
    surface_watch_handle watch;
    wl_event_source *pending = nullptr; // the idle source that draws and pushes, or null
    std::array<locked_buffer, 2> held; // the two buffers that were pushed last, the older one first
};

struct vantore_capturing {
    swapchain_handle cap_sc; // for both kinds of captures
    uint32_t cap_wid = 0; // the window for which it was made, and the size in pixels
    int cap_w = 0, cap_h = 0;
    locked_buffer cap_held; // handed out by the last single capture
    vantore_capture_subscription cap_sub;
    listener window_ends;
};
