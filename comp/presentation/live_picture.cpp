#include "live_picture.hpp"

#include "../records.hpp"
#include "../server.hpp"
#include "../windows/toplevel.hpp"
#include "overlay.hpp"

// Lives as long as the node.
struct live_picture {
    wlr_scene_buffer *node = nullptr;
    const vantore_toplevel *window = nullptr; // null when it is no longer mapped
    listener commit, unmap, surface_destroy, output_sample, node_destroy;
};

static bool is_turned(wl_output_transform transform)
{
    return (unsigned(transform) & WL_OUTPUT_TRANSFORM_90) != 0;
}

wlr_fbox live_picture_source(const wlr_box &geometry, int surface_width, int surface_height,
                             const wlr_fbox &source, wl_output_transform transform)
{
    if (surface_width <= 0 || surface_height <= 0)
        return source;
    const double upright_width = is_turned(transform) ? source.height : source.width,
                 upright_height = is_turned(transform) ? source.width : source.height;
    const double x_scale = upright_width / surface_width, y_scale = upright_height / surface_height;
    const wlr_box surface{.x = 0, .y = 0, .width = surface_width, .height = surface_height};
    wlr_box shown{};
    if (!wlr_box_intersection(&shown, &geometry, &surface))
        shown = surface;
    const wlr_fbox upright{shown.x * x_scale, shown.y * y_scale, shown.width * x_scale,
                           shown.height * y_scale};
    wlr_fbox part{};
    wlr_fbox_transform(&part, &upright, wlr_output_transform_invert(transform), upright_width,
                       upright_height);
    part.x += source.x;
    part.y += source.y;
    return part;
}

void scene_buffer_show_surface(wlr_scene_buffer *node, wlr_surface &surface)
{
    wlr_buffer *buffer = surface.buffer != nullptr ? &surface.buffer->base : nullptr;
    wlr_scene_buffer_set_buffer_options options{};
    if (const auto *sync = wlr_linux_drm_syncobj_v1_get_surface_state(&surface)) {
        options.wait_timeline = sync->acquire_timeline;
        options.wait_point = sync->acquire_point;
    }
    wlr_scene_buffer_set_buffer_with_options(node, buffer, &options);
}

static void show_latest(live_picture &p)
{
    wlr_surface *surface = tl_surface(*p.window);
    scene_buffer_show_surface(p.node, *surface);
    if (surface->buffer == nullptr)
        return;
    wlr_fbox whole{};
    wlr_surface_get_buffer_source_box(surface, &whole);
    const auto &state = surface->current;
    const wlr_fbox source =
        live_picture_source(tl_get_geometry(*p.window), state.width, state.height, whole, state.transform);
    wlr_scene_buffer_set_source_box(p.node, &source);
    wlr_scene_buffer_set_transform(p.node, state.transform);
}

// The client may not draw into its buffer again before an output has read it for this picture.
static void hold_release(live_picture &p, wlr_scene_output_sample_event *sample)
{
    auto *sync = wlr_linux_drm_syncobj_v1_get_surface_state(tl_surface(*p.window));
    if (sync == nullptr || sample->release_timeline == nullptr)
        return;
    wlr_linux_drm_syncobj_v1_state_add_release_point(sync, sample->release_timeline, sample->release_point,
                                                     wl_display_get_event_loop(p.window->server->display));
}

// The window may go before its surface does, which can then be committed again.
static void window_gone(live_picture &p)
{
    p.window = nullptr;
    unlisten(p.output_sample);
    unlisten(p.commit);
    unlisten(p.unmap);
    unlisten(p.surface_destroy);
    wlr_scene_buffer_set_buffer(p.node, nullptr);
}

static void node_gone(live_picture &p)
{
    delete &p;
}

wlr_scene_buffer *live_picture_create(vantore_toplevel &t, wlr_scene_tree *parent)
{
    wlr_surface *surface = tl_surface(t);
    if (surface == nullptr || surface->buffer == nullptr)
        return nullptr;
    wlr_scene_buffer *node = wlr_scene_buffer_create(parent, nullptr);
    if (node == nullptr)
        return nullptr;
    node->point_accepts_input = takes_no_input;
    auto *p = new live_picture{};
    p->node = node;
    p->window = &t;
    listen<&live_picture::commit, show_latest>(*p, surface->events.commit);
    listen<&live_picture::unmap, window_gone>(*p, surface->events.unmap);
    listen<&live_picture::surface_destroy, window_gone>(*p, surface->events.destroy);
    listen<&live_picture::output_sample, hold_release>(*p, node->events.output_sample);
    listen<&live_picture::node_destroy, node_gone>(*p, node->node.events.destroy);
    show_latest(*p);
    return node;
}
