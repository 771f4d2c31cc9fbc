// Renders what no screen shows, into buffers of a private swapchain and from there into memory.
#pragma once

#include "fwd.hpp"
#include "handles.hpp"

#include <cstdlib>

using texture_handle = handle<wlr_texture, wlr_texture_destroy>;
using swapchain_handle = handle<wlr_swapchain, wlr_swapchain_destroy>;
using pixel_memory = handle<unsigned char, free>;

// Returns a swapchain whose buffers the renderer can draw into and read. Sizes are pixels. Returns null if a
// size is below 1 or the renderer offers no suitable format.
swapchain_handle offscreen_swapchain(const vantore_server &server, int width, int height);

// Draws the scene as the output shows it into the next buffer of the swapchain, which must have the output's
// size, and puts that buffer into the state. Composes client buffers even if one could be shown directly.
// Nothing is committed, and all damage remains for the output's next frame. Returns false on failure.
bool offscreen_draw_output(vantore_output &o, wlr_swapchain *swapchain, wlr_output_state &state);

// Returns the texture's pixels as red, green, blue and alpha, with the rows packed. Returns null if there is
// no memory or the texture can't be read.
pixel_memory read_rgba(wlr_texture *texture);
