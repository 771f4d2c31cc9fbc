// Rendering that no screen shows: into buffers of a private swapchain, and from there into memory.
#pragma once

#include "fwd.hpp"
#include "handles.hpp"

#include <cstdlib>

using texture_handle = handle<wlr_texture, wlr_texture_destroy>;
using swapchain_handle = handle<wlr_swapchain, wlr_swapchain_destroy>;
using pixel_memory = handle<unsigned char, free>;

// A swapchain whose buffers the renderer can draw into and read, sizes in pixels. Null for a size below 1,
// and where the renderer offers no format for it.
swapchain_handle offscreen_swapchain(const vantore_server &server, int width, int height);

// Builds the scene as the output shows it into the next buffer of the swapchain, which has the output's size,
// and puts that buffer into the state. Client buffers are composed even where one could be shown directly.
// Nothing is committed, and what was damaged before stays damaged for the output's next frame. False on
// failure.
bool offscreen_draw_output(vantore_output &o, wlr_swapchain *swapchain, wlr_output_state &state);

// The texture's pixels as red, green, blue and alpha, rows packed. Null without memory, and where the texture
// can't be read.
pixel_memory read_rgba(wlr_texture *texture);
