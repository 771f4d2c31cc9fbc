#include "cairo_buffer.hpp"

#include "records.hpp"

#include <algorithm>
#include <cmath>
#include <drm_fourcc.h>

static void cairo_buffer_destroy(wlr_buffer *base)
{
    cairo_buffer *b = owner_of<&cairo_buffer::base>(base);
    wlr_buffer_finish(base);
    cairo_surface_destroy(b->surface);
    delete b;
}

static bool cairo_buffer_data_ptr(wlr_buffer *base, uint32_t flags, void **data, uint32_t *format,
                                  size_t *stride)
{
    if ((flags & WLR_BUFFER_DATA_PTR_ACCESS_WRITE) != 0)
        return false;
    cairo_surface_t *surface = owner_of<&cairo_buffer::base>(base)->surface;
    *data = cairo_image_surface_get_data(surface);
    *format = DRM_FORMAT_ARGB8888;
    *stride = size_t(cairo_image_surface_get_stride(surface));
    return *data != nullptr;
}

static void cairo_buffer_end(wlr_buffer *) {}

static constexpr wlr_buffer_impl cairo_buffer_impl{
    .destroy = cairo_buffer_destroy,
    .begin_data_ptr_access = cairo_buffer_data_ptr,
    .end_data_ptr_access = cairo_buffer_end,
};

cairo_buffer *cairo_buffer_from_surface(cairo_surface_t *surf)
{
    auto *b = new cairo_buffer{};
    wlr_buffer_init(&b->base, &cairo_buffer_impl, cairo_image_surface_get_width(surf),
                    cairo_image_surface_get_height(surf));
    b->surface = surf;
    return b;
}

cairo_buffer *cairo_buffer_create(int w, int h, cairo_t **cr)
{
    cairo_surface_t *surface =
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, std::max(w, 1), std::max(h, 1));
    *cr = cairo_create(surface);
    return cairo_buffer_from_surface(surface);
}

cairo_buffer *cairo_buffer_create_scaled(int w, int h, double scale, cairo_t **cr)
{
    const double pixels_w = std::ceil(w * scale), pixels_h = std::ceil(h * scale);
    cairo_buffer *b = cairo_buffer_create(int(pixels_w), int(pixels_h), cr);
    cairo_scale(*cr, pixels_w / w, pixels_h / h);
    return b;
}

void scene_buffer_set_cairo(wlr_scene_buffer *sb, cairo_buffer *b)
{
    cairo_surface_flush(b->surface);
    wlr_scene_buffer_set_buffer(sb, &b->base);
    wlr_buffer_drop(&b->base);
}

void cairo_set_color(cairo_t *cr, const color &c)
{
    cairo_set_source_rgba(cr, double(c[0]), double(c[1]), double(c[2]), double(c[3]));
}
