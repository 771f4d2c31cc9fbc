// The scene's damage tracking takes a private buffer for the newest frame. The older buffers still count what
// was painted into it as damage. When the private buffer is destroyed, that damage passes to the next frame.

#include "offscreen.hpp"

#include "outputs/output.hpp"
#include "server.hpp"

#include <drm_fourcc.h>

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

static const wlr_drm_format *picture_format(const vantore_server &server)
{
    const wlr_drm_format_set *formats =
        wlr_renderer_get_texture_formats(server.renderer, server.allocator->buffer_caps);
    if (formats == nullptr)
        return nullptr;
    const wlr_drm_format *format = wlr_drm_format_set_get(formats, DRM_FORMAT_XRGB8888);
    return format != nullptr ? format : wlr_drm_format_set_get(formats, DRM_FORMAT_ARGB8888);
}

swapchain_handle offscreen_swapchain(const vantore_server &server, int width, int height)
{
    const wlr_drm_format *format = picture_format(server);
    if (width < 1 || height < 1 || format == nullptr)
        return nullptr;
    return swapchain_handle{wlr_swapchain_create(server.allocator, width, height, format)};
}

bool offscreen_draw_output(vantore_output &o, wlr_swapchain *swapchain, wlr_output_state &state)
{
    const composition_lock lock{o.wlr_output};
    wlr_scene_output_state_options options{};
    options.swapchain = swapchain;
    return wlr_scene_output_build_state(o.scene_output, &state, &options) && state.buffer != nullptr;
}

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
