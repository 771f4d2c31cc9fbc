// The scene is built into a buffer of a private swapchain and nothing is committed. The scene's damage
// tracking takes that buffer for the newest frame: what it painted still counts as damage of every older
// buffer, and goes back to the damage of the next frame when the private buffer dies.

#include "render_output.hpp"

#include "../outputs/output.hpp"
#include "../server.hpp"

#include <drm_fourcc.h>

using texture_handle = handle<wlr_texture, wlr_texture_destroy>;
using swapchain_handle = handle<wlr_swapchain, wlr_swapchain_destroy>;

// Keeps the scene from handing a client's own buffer through, whose size and format are the client's.
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

pixel_memory read_rgba(wlr_texture *texture)
{
    const size_t stride = size_t(texture->width) * 4;
    pixel_memory pixels{static_cast<unsigned char *>(malloc(stride * texture->height))};
    if (pixels == nullptr)
        return nullptr;
    wlr_texture_read_pixels_options options{};
    options.data = pixels.get();
    options.format = DRM_FORMAT_ABGR8888;
    options.stride = uint32_t(stride);
    return wlr_texture_read_pixels(texture, &options) ? std::move(pixels) : nullptr;
}

static const wlr_drm_format *picture_format(const vantore_server &server)
{
    const wlr_drm_format_set *formats =
        wlr_renderer_get_texture_formats(server.renderer, server.allocator->buffer_caps);
    if (formats == nullptr)
        return nullptr;
    const wlr_drm_format *format = wlr_drm_format_set_get(formats, DRM_FORMAT_XRGB8888);
    return format != nullptr ? format : wlr_drm_format_set_get(formats, DRM_FORMAT_ARGB8888);
}

static swapchain_handle private_swapchain(const vantore_server &server, int width, int height)
{
    const wlr_drm_format *format = picture_format(server);
    if (width < 1 || height < 1 || format == nullptr)
        return nullptr;
    return swapchain_handle{wlr_swapchain_create(server.allocator, width, height, format)};
}

// Null where the scene can't be drawn. What it drew into dies with the state and the swapchain.
static texture_handle draw_scene(vantore_output &o, wlr_swapchain *swapchain, wlr_output_state &state)
{
    const composition_lock lock{o.wlr_output};
    wlr_scene_output_state_options options{};
    options.swapchain = swapchain;
    if (!wlr_scene_output_build_state(o.scene_output, &state, &options) || state.buffer == nullptr)
        return nullptr;
    return texture_handle{wlr_texture_from_buffer(o.server->renderer, state.buffer)};
}

static void make_opaque(unsigned char *pixels, size_t count)
{
    for (size_t i = 0; i < count; i++)
        pixels[i * 4 + 3] = 255;
}

rendered vnt_render_output_rgba(vantore_server &server, vantore_output &o)
{
    const int width = o.wlr_output->width, height = o.wlr_output->height;
    const swapchain_handle swapchain = private_swapchain(server, width, height);
    if (swapchain == nullptr)
        return {};
    output_state state;
    const texture_handle texture = draw_scene(o, swapchain.get(), state);
    if (texture == nullptr)
        return {};
    rendered picture{.pixels = read_rgba(texture.get()), .width = width, .height = height};
    if (picture.pixels != nullptr)
        make_opaque(picture.pixels.get(), size_t(width) * size_t(height));
    return picture;
}
