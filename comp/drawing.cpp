#include "drawing.hpp"

#include "cairo_buffer.hpp"

#include <numbers>

void draw_round_path(cairo_t *cr, const wlr_fbox &box, double radius)
{
    constexpr double quarter = std::numbers::pi / 2;
    const double left = box.x + radius, right = box.x + box.width - radius;
    const double top = box.y + radius, bottom = box.y + box.height - radius;
    cairo_new_sub_path(cr);
    cairo_arc(cr, right, top, radius, -quarter, 0);
    cairo_arc(cr, right, bottom, radius, 0, quarter);
    cairo_arc(cr, left, bottom, radius, quarter, 2 * quarter);
    cairo_arc(cr, left, top, radius, 2 * quarter, 3 * quarter);
    cairo_close_path(cr);
}

void fill_round(cairo_t *cr, const wlr_fbox &box, double radius, const color &c)
{
    draw_round_path(cr, box, radius);
    cairo_set_color(cr, c);
    cairo_fill(cr);
}

void stroke_round(cairo_t *cr, const wlr_fbox &box, double radius, const color &c, double width)
{
    draw_round_path(cr, box, radius);
    cairo_set_color(cr, c);
    cairo_set_line_width(cr, width);
    cairo_stroke(cr);
}

void draw_centered_text(cairo_t *cr, const char *text, double x, double width, double baseline)
{
    cairo_text_extents_t extents;
    cairo_text_extents(cr, text, &extents);
    cairo_move_to(cr, x + (width - extents.width) / 2 - extents.x_bearing, baseline);
    cairo_show_text(cr, text);
}
