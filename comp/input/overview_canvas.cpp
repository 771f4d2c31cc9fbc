#include "overview_canvas.hpp"

#include "../cairo_buffer.hpp"
#include "../config/settings.hpp"
#include "../presentation/overlay.hpp"
#include "overview_boxes.hpp"

#include <algorithm>

static constexpr color default_accent{0.4F, 0.62F, 0.95F, 1};

void overview_add_picture(const overview_canvas &canvas, cairo_buffer *picture, const wlr_box &at)
{
    overlay shown; // the tree owns its node
    overlay_show(shown, canvas.tree, picture, at);
}

void overview_draw_line(cairo_t *cr, const font &f, std::string_view text, const color &c,
                        const wlr_box &size, double margin)
{
    set_font(cr, f);
    const std::string line = fitting_text(cr, text, size.width - 2 * margin);
    const cairo_text_extents_t extents = text_extents(cr, line);
    const cairo_font_extents_t letters = font_extents(cr);
    cairo_set_color(cr, c);
    cairo_move_to(cr, std::max((size.width - extents.width) / 2 - extents.x_bearing, margin),
                  (size.height + letters.ascent - letters.descent) / 2);
    cairo_show_text(cr, line.c_str());
}

void overview_fill_badge(cairo_t *cr, const color &c)
{
    fill_round(cr, {0, 0, overview_badge, overview_badge}, overview_badge / 2.0, c);
}

color overview_accent(float opacity)
{
    color c = g_accent_set ? g_accent : default_accent;
    c[3] = opacity;
    return c;
}
