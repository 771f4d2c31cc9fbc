#include "mirror_pointer.hpp"

#include "../cairo_buffer.hpp"
#include "../input/cursor_locate.hpp"
#include "../presentation/live_picture.hpp"
#include "../presentation/overlay.hpp"
#include "../server.hpp"
#include "../windows/placement.hpp"
#include "lookup.hpp"
#include "output.hpp"

#include <cmath>
#include <cstring>
#include <format>

// Some outputs have no plane for the pointer, or something keeps it from being used for a while. Then the
// pointer is part of the picture.
static bool is_in_picture(const struct wlr_output &source)
{
    for (const auto &cursor : each<&wlr_output_cursor::link>(source.cursors))
        if (cursor.enabled && cursor.visible && source.hardware_cursor != &cursor)
            return true;
    return false;
}

static void show_buffer_of(wlr_surface &surface, vantore_mirror &m)
{
    scene_buffer_show_surface(m.mir_cursor, surface);
    wlr_surface_get_buffer_source_box(&surface, &m.mir_cur_part);
    wlr_scene_buffer_set_transform(m.mir_cursor, surface.current.transform);
}

static void copy_surface(vantore_mirror &m, const vantore_cursor_shown &shown, double scale)
{
    wlr_surface &surface = *shown.cur_cursor_surface;
    const std::string key = std::format("s:{}:{}", static_cast<void *>(surface.buffer), surface.current.seq);
    if (key != m.mir_cur_key) // giving the node a buffer causes a frame, even if it is the same one
        show_buffer_of(surface, m);
    m.mir_cur_key = key;
    m.mir_cur_w = int(std::lround(surface.current.width * scale));
    m.mir_cur_h = int(std::lround(surface.current.height * scale));
    m.mir_cur_hx = shown.cur_cursor_hx * scale;
    m.mir_cur_hy = shown.cur_cursor_hy * scale;
}

static void copy_image(vantore_mirror &m, const wlr_xcursor_image &image)
{
    cairo_surface_t *picture =
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, int(image.width), int(image.height));
    if (unsigned char *pixels = cairo_image_surface_get_data(picture)) // none without memory
        memcpy(pixels, image.buffer, size_t{image.width} * image.height * 4);
    cairo_surface_mark_dirty(picture);
    scene_buffer_set_cairo(m.mir_cursor, cairo_buffer_from_surface(picture));
    m.mir_cur_part = {0, 0, double(image.width), double(image.height)};
    wlr_scene_buffer_set_transform(m.mir_cursor, WL_OUTPUT_TRANSFORM_NORMAL);
    m.mir_cur_w = int(image.width);
    m.mir_cur_h = int(image.height);
    m.mir_cur_hx = image.hotspot_x;
    m.mir_cur_hy = image.hotspot_y;
}

// Animated pointers stand still. Returns false if the theme has no such image.
static bool copy_named(vantore_mirror &m, const vantore_server &server, const char *name, float scale)
{
    wlr_xcursor *pointer = wlr_xcursor_manager_get_xcursor(cursor_locate_mgr(server), name, scale);
    if (pointer == nullptr || pointer->image_count == 0)
        return false;
    const wlr_xcursor_image &image = *pointer->images[0];
    const std::string key = std::format("n:{}@{}:{}x{}", name, int(scale * 100), image.width, image.height);
    if (key != m.mir_cur_key)
        copy_image(m, image);
    m.mir_cur_key = key;
    return true;
}

// Returns false if the pointer has no image now.
static bool copy_shown(vantore_mirror &m, const vantore_server &server, float scale)
{
    const vantore_cursor_shown &shown = server.cursor_shown;
    const bool is_enlarged = server.locating.cursor_locate_step > 0;
    if (shown.cur_cursor_named || !shown.is_chosen || is_enlarged) {
        const bool has_name = shown.cur_cursor_named && shown.cur_cursor_name[0] != '\0';
        return copy_named(m, server, has_name ? shown.cur_cursor_name.data() : "default", scale);
    }
    if (shown.cur_cursor_surface == nullptr || shown.cur_cursor_surface->buffer == nullptr)
        return false; // its client hides it
    copy_surface(m, shown, double(scale));
    return true;
}

// Cuts the copy at the edges of its output. Returns false if nothing is left of it.
static bool place_copy(const vantore_output &o, const wlr_cursor &cursor, const wlr_box &source, double scale)
{
    const vantore_mirror &m = o.mirror;
    const double x = (cursor.x - source.x) * scale, y = (cursor.y - source.y) * scale;
    const wlr_box at = fit_pointer(m.fit, x, y, m.mir_cur_hx, m.mir_cur_hy, m.mir_cur_w, m.mir_cur_h);
    const wlr_box box = output_layout_box(o),
                  screen{.x = 0, .y = 0, .width = box.width, .height = box.height};
    wlr_box visible{};
    if (!wlr_box_intersection(&visible, &at, &screen))
        return false;
    const wlr_box cut{
        .x = visible.x - at.x, .y = visible.y - at.y, .width = visible.width, .height = visible.height};
    const wlr_fbox part =
        live_picture_source(cut, at.width, at.height, m.mir_cur_part, m.mir_cursor->transform);
    wlr_scene_buffer_set_source_box(m.mir_cursor, &part);
    wlr_scene_buffer_set_dest_size(m.mir_cursor, visible.width, visible.height);
    wlr_scene_node_set_position(&m.mir_cursor->node, visible.x, visible.y);
    return true;
}

bool has_pointer(const vantore_output &o)
{
    return box_contains(output_layout_box(o), o.server->cursor->x, o.server->cursor->y);
}

static bool show_copy(vantore_output &o, const vantore_output &src)
{
    vantore_mirror &m = o.mirror;
    const vantore_server &server = *src.server;
    if (!has_pointer(src) || is_in_picture(*src.wlr_output))
        return false;
    if (!copy_shown(m, server, src.wlr_output->scale) || m.mir_cur_w < 1 || m.mir_cur_h < 1)
        return false;
    return place_copy(o, *server.cursor, output_layout_box(src), double(src.wlr_output->scale));
}

// Or a client's buffer would stay locked.
static void drop_image(vantore_mirror &m)
{
    if (!m.mir_cur_key.empty())
        wlr_scene_buffer_set_buffer(m.mir_cursor, nullptr);
    m.mir_cur_key.clear();
}

void mir_cursor_update(vantore_output &o, const vantore_output &src)
{
    vantore_mirror &m = o.mirror;
    if (m.mir_cursor == nullptr && m.mir_tree != nullptr) {
        m.mir_cursor = wlr_scene_buffer_create(m.mir_tree, nullptr);
        if (m.mir_cursor != nullptr)
            m.mir_cursor->point_accepts_input = takes_no_input;
    }
    if (m.mir_cursor == nullptr)
        return;
    const bool shown = show_copy(o, src);
    wlr_scene_node_set_enabled(&m.mir_cursor->node, shown);
    if (!shown)
        drop_image(m);
}
