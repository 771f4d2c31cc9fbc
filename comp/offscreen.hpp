// Renders what no screen shows, into buffers of a private swapchain and from there into memory.
#pragma once

#include "fwd.hpp"
#include "handles.hpp"
#include "picture_size.hpp"

#include <cstdlib>

using pixel_memory = handle<unsigned char, free>;

// Keeps the scene from passing a client's own buffer through, because that has the client's size and format.
struct composition_lock {
    explicit composition_lock(wlr_output *locked) : output(locked)
    {
        wlr_output_lock_attach_render(output, true);
    }
    ~composition_lock() { wlr_output_lock_attach_render(output, false); }
    composition_lock(const composition_lock &) = delete;
    composition_lock &operator=(const composition_lock &) = delete;

private:
    wlr_output *output;
};

enum class pixel_order { any, linear_if_possible }; // linear buffers can be read by any program

// Returns a swapchain whose buffers the renderer can draw into and read. Sizes are pixels. Returns null if a
// size is below 1 or the renderer offers no suitable format.
swapchain_handle offscreen_swapchain(const vantore_server &server, int width, int height,
                                     pixel_order order = pixel_order::any);

// Draws the scene as the output shows it into the next buffer of the swapchain, which must have the output's
// size, and puts that buffer into the state. Composes client buffers even if one could be shown directly.
// Nothing is committed, and all damage remains for the output's next frame. Returns false on failure.
bool offscreen_draw_output(vantore_output &o, wlr_swapchain *swapchain, wlr_output_state &state);

// Returns the size of the picture that the client has drawn of the surface: of the part of its buffer that it
// shows, the right way up, and at least of the surface. Both sides are 0 if it has drawn nothing.
picture_size offscreen_surface_size(wlr_surface &surface);

// Draws the surface and its subsurfaces, on black, into the next buffer of the swapchain, which must have the
// surface's size. A surface that shows one pixel of its buffer as several is drawn in the pixels of the
// buffer. Returns null on failure.
locked_buffer offscreen_draw_surface(const vantore_server &server, wlr_swapchain &swapchain,
                                     wlr_surface &surface);

// Waits until the buffer holds what was drawn into it. A GPU's driver makes other programs wait when they
// read the buffer, but a software renderer goes on in threads of its own that nobody waits for. Returns false
// on failure.
bool offscreen_await(const vantore_server &server, wlr_buffer &buffer);

// Returns the texture's pixels as red, green, blue and alpha, with the rows packed. Returns null if there is
// no memory or the texture can't be read.
pixel_memory read_rgba(wlr_texture *texture);
