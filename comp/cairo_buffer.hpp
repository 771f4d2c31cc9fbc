// Buffers of the scene whose pixels cairo draws in software.
#pragma once

#include "color.hpp"
#include "wlr.hpp"

#include <cairo.h>

struct cairo_buffer {
    wlr_buffer base; // first, so that a pointer to it is a pointer to the record
    cairo_surface_t *surface; // owned, CAIRO_FORMAT_ARGB32
};

// Creates a transparent buffer and a context to draw on it. The caller destroys the context after drawing.
// Sizes are pixels, and a size under 1 becomes 1. The caller owns the buffer until it is given to
// scene_buffer_set_cairo.
cairo_buffer *cairo_buffer_create(int w, int h, cairo_t **cr);

// Does the same for a size in layout units on an output of this scale. The context draws in layout units.
cairo_buffer *cairo_buffer_create_scaled(int w, int h, double scale, cairo_t **cr);

// Makes a buffer of a finished image surface and takes over the surface.
cairo_buffer *cairo_buffer_from_surface(cairo_surface_t *surf);

// Shows the buffer in a scene node, which then holds the only reference. The caller must not use the buffer
// any more.
void scene_buffer_set_cairo(wlr_scene_buffer *sb, cairo_buffer *b);

void cairo_set_color(cairo_t *cr, const color &c);
