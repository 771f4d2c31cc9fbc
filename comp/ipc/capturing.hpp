// Which window is captured in graphics memory, and the buffers that were handed out.
#pragma once

#include "../handles.hpp"
#include "../records.hpp"

struct vantore_capturing {
    swapchain_handle cap_sc;
    uint32_t cap_wid = 0; // the window for which it was made, and the size in pixels
    int cap_w = 0, cap_h = 0;
    locked_buffer cap_held; // handed out by the last capture
    listener window_ends;
};
