// Shapes and text that several of the compositor's own pictures share. Coordinates are pixels of the picture.
#pragma once

#include "color.hpp"
#include "wlr.hpp"

#include <cairo.h>

// Adds a rounded rectangle to the path.
void draw_round_path(cairo_t *cr, const wlr_fbox &box, double radius);
void fill_round(cairo_t *cr, const wlr_fbox &box, double radius, const color &c);
// Half of the line lies outside the box.
void stroke_round(cairo_t *cr, const wlr_fbox &box, double radius, const color &c, double width);

// Writes the text between x and x + width in the font of the context, in the middle. Longer text reaches
// beyond both ends. It must be valid UTF-8: cairo draws nothing any more after other bytes.
void draw_centered_text(cairo_t *cr, const char *text, double x, double width, double baseline);
