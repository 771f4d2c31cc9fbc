// Draws shapes and text for the compositor's own pictures. Coordinates are pixels of the picture.
#pragma once

#include "color.hpp"
#include "wlr.hpp"

#include <cairo.h>

// Adds a rounded rectangle to the path.
void draw_round_path(cairo_t *cr, const wlr_fbox &box, double radius);
void fill_round(cairo_t *cr, const wlr_fbox &box, double radius, const color &c);
// Half of the line's width lies outside the box.
void stroke_round(cairo_t *cr, const wlr_fbox &box, double radius, const color &c, double width);

// Centres the text between x and x + width, in the font of the context. Longer text reaches beyond both ends.
// The text must be valid UTF-8, because cairo draws nothing any more after an error.
void draw_centered_text(cairo_t *cr, const char *text, double x, double width, double baseline);
