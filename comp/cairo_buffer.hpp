// Software-drawn pixels as buffers of the scene.
#pragma once

#include "color.hpp"
#include "wlr.hpp"

#include <cairo.h>

struct cairo_buffer {
    wlr_buffer base; // first, so that a pointer to it is a pointer to the record
    cairo_surface_t *surface; // owned, CAIRO_FORMAT_ARGB32
};

// A new transparent buffer and a context to draw on it, which the caller destroys after drawing. Sizes in
// pixels; under 1 they become 1. The caller owns the buffer until it is given to scene_buffer_set_cairo.
cairo_buffer *cairo_buffer_create(int w, int h, cairo_t **cr);

// Takes over a finished image surface.
cairo_buffer *cairo_buffer_from_surface(cairo_surface_t *surf);

// Shows the buffer in a scene node, which then holds the only reference: the caller keeps none.
void scene_buffer_set_cairo(wlr_scene_buffer *sb, cairo_buffer *b);

void cairo_set_color(cairo_t *cr, const color &c);
