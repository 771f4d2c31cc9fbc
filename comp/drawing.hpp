// Draws shapes and text for the compositor's own pictures. Coordinates are units of the context.
#pragma once

#include "color.hpp"
#include "handles.hpp"
#include "wlr.hpp"

#include <cairo.h>
#include <string>
#include <string_view>

// Adds a rounded rectangle to the path.
void draw_round_path(cairo_t *cr, const wlr_fbox &box, double radius);
void fill_round(cairo_t *cr, const wlr_fbox &box, double radius, const color &c);
// Half of the line's width lies outside the box.
void stroke_round(cairo_t *cr, const wlr_fbox &box, double radius, const color &c, double width);

// The system's sans-serif font.
struct font {
    double size;
    cairo_font_weight_t weight = CAIRO_FONT_WEIGHT_NORMAL;
};

void set_font(cairo_t *cr, const font &f);
// Creates a context that measures text before there is a picture. Letters are fitted to whole pixels, so they
// are not equally wide at all scales.
handle<cairo_t, cairo_destroy> measuring_context(const font &f, double scale);
// These measure in the font of the context.
cairo_text_extents_t text_extents(cairo_t *cr, const std::string &text);
cairo_font_extents_t font_extents(cairo_t *cr);
// Returns the text as valid UTF-8. If it is wider than this, it is cut and ends with "…".
std::string fitting_text(cairo_t *cr, std::string_view text, double width);

// Centres the text between x and x + width, in the font of the context. Longer text reaches beyond both ends.
// The text must be valid UTF-8, because cairo draws nothing any more after an error.
void draw_centered_text(cairo_t *cr, const char *text, double x, double width, double baseline);
