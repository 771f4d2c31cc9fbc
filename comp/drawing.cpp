#include "drawing.hpp"

#include "cairo_buffer.hpp"
#include "utf8.hpp"

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
    const cairo_text_extents_t extents = text_extents(cr, text);
    cairo_move_to(cr, x + (width - extents.width) / 2 - extents.x_bearing, baseline);
    cairo_show_text(cr, text);
}

void set_font(cairo_t *cr, const font &f)
{
    cairo_select_font_face(cr, "sans-serif", CAIRO_FONT_SLANT_NORMAL, f.weight);
    cairo_set_font_size(cr, f.size);
}

handle<cairo_t, cairo_destroy> measuring_context(const font &f, double scale)
{
    cairo_surface_t *surface = cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1);
    handle<cairo_t, cairo_destroy> cr{cairo_create(surface)};
    cairo_surface_destroy(surface); // the context keeps it
    cairo_scale(cr.get(), scale, scale);
    set_font(cr.get(), f);
    return cr;
}

cairo_text_extents_t text_extents(cairo_t *cr, const std::string &text)
{
    cairo_text_extents_t extents;
    cairo_text_extents(cr, text.c_str(), &extents);
    return extents;
}

cairo_font_extents_t font_extents(cairo_t *cr)
{
    cairo_font_extents_t extents;
    cairo_font_extents(cr, &extents);
    return extents;
}

// Returns the length of the text's start up to the character that holds this byte.
static size_t character_start(std::string_view text, size_t byte)
{
    while (byte > 0 && byte < text.size() && (static_cast<unsigned char>(text[byte]) & 0xc0U) == 0x80U)
        byte--;
    return byte;
}

// No text that fits a screen is longer, and cairo takes its time to measure megabytes.
static constexpr size_t most_bytes = 4000;

std::string fitting_text(cairo_t *cr, std::string_view text, double width)
{
    std::string whole = valid_utf8(text.substr(0, most_bytes));
    if (text.size() <= most_bytes && text_extents(cr, whole).width <= width)
        return whole;
    size_t fits = 0, too_long = whole.size() + 1;
    while (too_long - fits > 1) {
        const size_t middle = fits + (too_long - fits) / 2;
        const std::string cut = whole.substr(0, character_start(whole, middle)) + "…";
        (text_extents(cr, cut).width <= width ? fits : too_long) = middle;
    }
    return whole.substr(0, character_start(whole, fits)) + "…";
}
