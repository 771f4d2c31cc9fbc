// The scene's damage tracking takes a private buffer for the newest frame. The older buffers still count what
// was painted into it as damage. When the private buffer is destroyed, that damage passes to the next frame.

#include "offscreen.hpp"

#include "outputs/output.hpp"
#include "server.hpp"

#include <algorithm>
#include <cmath>
#include <drm_fourcc.h>
#include <span>
#include <utility>

static const wlr_drm_format *picture_format(const vantore_server &server)
{
    const wlr_drm_format_set *formats =
        wlr_renderer_get_texture_formats(server.renderer, server.allocator->buffer_caps);
    if (formats == nullptr)
        return nullptr;
    const wlr_drm_format *format = wlr_drm_format_set_get(formats, DRM_FORMAT_XRGB8888);
    return format != nullptr ? format : wlr_drm_format_set_get(formats, DRM_FORMAT_ARGB8888);
}

static bool offers(const wlr_drm_format &format, uint64_t modifier)
{
    return std::ranges::contains(std::span{format.modifiers, format.len}, modifier);
}

swapchain_handle offscreen_swapchain(const vantore_server &server, int width, int height, pixel_order order)
{
    const wlr_drm_format *format = picture_format(server);
    if (width < 1 || height < 1 || format == nullptr)
        return nullptr;
    uint64_t modifier = DRM_FORMAT_MOD_LINEAR;
    const wlr_drm_format linear{.format = format->format, .len = 1, .capacity = 1, .modifiers = &modifier};
    if (order == pixel_order::linear_if_possible && offers(*format, modifier))
        format = &linear; // the swapchain copies it
    return swapchain_handle{wlr_swapchain_create(server.allocator, width, height, format)};
}

// A toolkit may stretch a buffer of one pixel and draw everything into subsurfaces, so a picture is never
// smaller than its surface.
picture_size offscreen_surface_size(wlr_surface &surface)
{
    if (wlr_surface_get_texture(&surface) == nullptr)
        return {};
    wlr_fbox shown{};
    wlr_surface_get_buffer_source_box(&surface, &shown);
    if ((unsigned(surface.current.transform) & WL_OUTPUT_TRANSFORM_90) != 0)
        std::swap(shown.width, shown.height);
    return {.width = std::max(int(std::lround(shown.width)), surface.current.width),
            .height = std::max(int(std::lround(shown.height)), surface.current.height)};
}

// Where surfaces are drawn, and how many pixels a unit of their coordinates takes.
struct surface_canvas {
    wlr_render_pass *pass;
    double x_scale, y_scale;
};

static wlr_box box_on_canvas(const surface_canvas &canvas, const wlr_surface &surface, int sx, int sy)
{
    const auto left = int(std::lround(sx * canvas.x_scale)), top = int(std::lround(sy * canvas.y_scale));
    const auto right = int(std::lround((sx + surface.current.width) * canvas.x_scale));
    const auto bottom = int(std::lround((sy + surface.current.height) * canvas.y_scale));
    return {.x = left, .y = top, .width = right - left, .height = bottom - top};
}

static void cap_blit_surface(wlr_surface *surface, int sx, int sy, void *data)
{
    const auto &canvas = *static_cast<surface_canvas *>(data);
    wlr_render_texture_options options{};
    options.texture = wlr_surface_get_texture(surface);
    if (options.texture == nullptr)
        return;
    wlr_surface_get_buffer_source_box(surface, &options.src_box);
    options.dst_box = box_on_canvas(canvas, *surface, sx, sy);
    options.transform = wlr_output_transform_invert(surface->current.transform);
    if (const auto *sync = wlr_linux_drm_syncobj_v1_get_surface_state(surface)) {
        options.wait_timeline = sync->acquire_timeline;
        options.wait_point = sync->acquire_point;
    }
    wlr_render_pass_add_texture(canvas.pass, &options);
}

static void add_black(wlr_render_pass *pass, const wlr_swapchain &swapchain)
{
    wlr_render_rect_options whole{};
    whole.box = {.x = 0, .y = 0, .width = swapchain.width, .height = swapchain.height};
    whole.color = {0, 0, 0, 1};
    whole.blend_mode = WLR_RENDER_BLEND_MODE_NONE;
    wlr_render_pass_add_rect(pass, &whole);
}

locked_buffer offscreen_draw_surface(const vantore_server &server, wlr_swapchain &swapchain,
                                     wlr_surface &surface)
{
    locked_buffer buffer{wlr_swapchain_acquire(&swapchain)};
    if (buffer == nullptr || surface.current.width < 1 || surface.current.height < 1)
        return nullptr;
    wlr_render_pass *pass = wlr_renderer_begin_buffer_pass(server.renderer, buffer.get(), nullptr);
    if (pass == nullptr)
        return nullptr;
    add_black(pass, swapchain);
    surface_canvas canvas{.pass = pass,
                          .x_scale = double(swapchain.width) / surface.current.width,
                          .y_scale = double(swapchain.height) / surface.current.height};
    wlr_surface_for_each_surface(&surface, cap_blit_surface, &canvas);
    return wlr_render_pass_submit(pass) ? std::move(buffer) : nullptr;
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

// The renderer waits for its threads before it reads.
bool offscreen_await(const vantore_server &server, wlr_buffer &buffer)
{
    const texture_handle texture{wlr_texture_from_buffer(server.renderer, &buffer)};
    uint32_t pixel = 0;
    const wlr_texture_read_pixels_options options{.data = &pixel,
                                                  .format = DRM_FORMAT_ABGR8888,
                                                  .stride = sizeof pixel,
                                                  .src_box = {.x = 0, .y = 0, .width = 1, .height = 1}};
    return texture != nullptr && wlr_texture_read_pixels(texture.get(), &options);
}
