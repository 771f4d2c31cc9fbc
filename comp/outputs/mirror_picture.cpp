#include "mirror_picture.hpp"

#include "../handles.hpp"
#include "../offscreen.hpp"
#include "../server.hpp"
#include "../windows/toplevel.hpp"
#include "lookup.hpp"
#include "mirror_pointer.hpp"
#include "output.hpp"

#include <utility>

// A turned output's picture is turned back.
static picture_size upright_size(const vantore_mirror &m)
{
    picture_size size = m.drawn;
    if ((unsigned(m.mir_buf->transform) & WL_OUTPUT_TRANSFORM_90) != 0)
        std::swap(size.width, size.height);
    return size;
}

static void mir_fit(vantore_output &o)
{
    vantore_mirror &m = o.mirror;
    if (m.mir_buf == nullptr || m.mir_bg == nullptr)
        return;
    const wlr_box box = output_layout_box(o);
    wlr_scene_node_set_position(&m.mir_tree->node, box.x, box.y);
    wlr_scene_rect_set_size(m.mir_bg, box.width, box.height);
    if (m.drawn == picture_size{} || wlr_box_empty(&box))
        return;
    const auto [width, height] = upright_size(m);
    m.fit = fit_picture(width, height, box.width, box.height);
    wlr_scene_buffer_set_dest_size(m.mir_buf, m.fit.box.width, m.fit.box.height);
    wlr_scene_node_set_position(&m.mir_buf->node, m.fit.box.x, m.fit.box.y);
}

// Makes the swapchain anew if the source has another size. Returns false if there is none.
static bool ready_to_draw(vantore_output &o, const picture_size &size)
{
    swapchain_handle &swapchain = o.mirror.mir_sc;
    if (swapchain == nullptr || swapchain->width != size.width || swapchain->height != size.height)
        swapchain = offscreen_swapchain(*o.server, size.width, size.height);
    return swapchain != nullptr && o.mirror.mir_buf != nullptr;
}

static void show(vantore_mirror &m, wlr_buffer &buffer)
{
    wlr_scene_buffer_set_buffer(m.mir_buf, &buffer);
    m.drawn = {.width = buffer.width, .height = buffer.height};
}

static void mir_render_source(vantore_output &o, wlr_surface &surface)
{
    vantore_mirror &m = o.mirror;
    if (!ready_to_draw(o, offscreen_surface_size(surface)))
        return;
    if (const locked_buffer buffer = offscreen_draw_surface(*o.server, *m.mir_sc, surface))
        show(m, *buffer);
}

void mir_update(vantore_output &o)
{
    vantore_toplevel *t = toplevel_by_id(*o.server, o.mirror.source.mir_src_wid);
    if (wlr_surface *surface = t != nullptr ? tl_surface(*t) : nullptr)
        mir_render_source(o, *surface);
    mir_fit(o);
}

static void mir_render_output(vantore_output &o, vantore_output &src)
{
    vantore_mirror &m = o.mirror;
    const struct wlr_output &source = *src.wlr_output;
    if (!source.enabled || m.seen == source.commit_seq)
        return;
    output_state state;
    if (!ready_to_draw(o, {.width = source.width, .height = source.height}) ||
        !offscreen_draw_output(src, m.mir_sc.get(), state))
        return;
    show(m, *state.buffer);
    wlr_scene_buffer_set_transform(m.mir_buf, source.transform);
    m.seen = source.commit_seq;
}

void mir_update_output(vantore_output &o)
{
    vantore_output *src = output_by_name(*o.server, o.mirror.source.mir_src_out);
    if (src != nullptr && src != &o)
        mir_render_output(o, *src);
    mir_fit(o);
    if (src != nullptr)
        mir_cursor_update(o, *src);
}
