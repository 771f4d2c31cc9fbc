#include "render_output.hpp"

#include "../outputs/output.hpp"
#include "../server.hpp"

static void make_opaque(unsigned char *pixels, size_t count)
{
    for (size_t i = 0; i < count; i++)
        pixels[i * 4 + 3] = 255;
}

// The state and the swapchain own the buffer that is drawn into, and both go when this returns.
rendered vnt_render_output_rgba(vantore_server &server, vantore_output &o)
{
    const int width = o.wlr_output->width, height = o.wlr_output->height;
    const swapchain_handle swapchain = offscreen_swapchain(server, width, height);
    output_state state;
    if (swapchain == nullptr || !offscreen_draw_output(o, swapchain.get(), state))
        return {};
    const texture_handle texture{wlr_texture_from_buffer(server.renderer, state.buffer)};
    if (texture == nullptr)
        return {};
    rendered picture{.pixels = read_rgba(texture.get()), .width = width, .height = height};
    if (picture.pixels != nullptr)
        make_opaque(picture.pixels.get(), size_t(width) * size_t(height));
    return picture;
}
