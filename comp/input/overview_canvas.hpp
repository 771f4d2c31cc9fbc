// What the overview draws its pictures with.
#pragma once

#include "../color.hpp"
#include "../drawing.hpp"
#include "../wlr.hpp"

struct cairo_buffer;

// Where the pictures go.
struct overview_canvas {
    wlr_scene_tree *tree; // at 0, 0
    double scale; // of the output
    float opacity; // of what would be opaque
};

// Shows the picture in this box, and takes it over.
void overview_add_picture(const overview_canvas &canvas, cairo_buffer *picture, const wlr_box &at);

// Draws one line of text in the middle of a picture of this size. Text that is too long is cut, and begins at
// the margin.
void overview_draw_line(cairo_t *cr, const font &f, std::string_view text, const color &c,
                        const wlr_box &size, double margin);
// Fills a round badge.
void overview_fill_badge(cairo_t *cr, const color &c);

// Returns the user's accent with this opacity, or a blue where none is set.
color overview_accent(float opacity);
