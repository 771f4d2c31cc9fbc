#include "picture_scale.hpp"

#include <algorithm>
#include <cmath>

picture_place place_picture(picture_size image, picture_size output, wp_mode mode)
{
    double scale_x = double(output.width) / image.width;
    double scale_y = double(output.height) / image.height;
    if (mode == WP_FILL)
        scale_x = scale_y = std::max(scale_x, scale_y);
    else if (mode == WP_FIT)
        scale_x = scale_y = std::min(scale_x, scale_y);
    else if (mode == WP_CENTER)
        scale_x = scale_y = 1;
    picture_place place{.x = (output.width - image.width * scale_x) / 2,
                        .y = (output.height - image.height * scale_y) / 2,
                        .scale_x = scale_x,
                        .scale_y = scale_y};
    if (mode == WP_CENTER) { // half a pixel would blur the whole picture
        place.x = std::floor(place.x);
        place.y = std::floor(place.y);
    }
    return place;
}

// Enlarging mixes the pixels at the image's edge with what lies beyond it. That must not be black.
static void draw_image(cairo_t *cr, cairo_surface_t *image, picture_size size)
{
    cairo_set_source_surface(cr, image, 0, 0);
    cairo_pattern_set_extend(cairo_get_source(cr), CAIRO_EXTEND_PAD);
    cairo_rectangle(cr, 0, 0, size.width, size.height);
    cairo_fill(cr);
}

picture scale_picture(cairo_surface_t *image, picture_size output, wp_mode mode)
{
    picture target{cairo_image_surface_create(CAIRO_FORMAT_ARGB32, output.width, output.height)};
    if (cairo_surface_status(target.get()) != CAIRO_STATUS_SUCCESS)
        return nullptr;
    const handle<cairo_t, cairo_destroy> cr{cairo_create(target.get())};
    cairo_set_source_rgb(cr.get(), 0, 0, 0);
    cairo_paint(cr.get());
    const picture_size size{.width = cairo_image_surface_get_width(image),
                            .height = cairo_image_surface_get_height(image)};
    const picture_place place = place_picture(size, output, mode);
    cairo_translate(cr.get(), place.x, place.y);
    cairo_scale(cr.get(), place.scale_x, place.scale_y);
    draw_image(cr.get(), image, size);
    cairo_surface_flush(target.get());
    return cairo_status(cr.get()) == CAIRO_STATUS_SUCCESS ? std::move(target) : nullptr;
}
