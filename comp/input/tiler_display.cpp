#include "tiler_display.hpp"

#include "../config/settings.hpp"
#include "../drawing.hpp"

#include <cstdio>

static constexpr double label_size = 9, label_width = 78, label_baseline = 72;
static constexpr double outline = 1.5;
static constexpr double zone_radius = 4, tile_radius = 6;
static constexpr color panel_fill{0.075F, 0.085F, 0.105F, 0.95F};
static constexpr color strip_fill{0.06F, 0.07F, 0.09F, 0.95F};
static constexpr color strip_outline{0.3F, 0.33F, 0.38F, 0.6F};
static constexpr color plain_text{0.62F, 0.65F, 0.7F, 0.9F};
static constexpr color zone_fill{1, 1, 1, 0.03F};
static constexpr color zone_outline{0.42F, 0.45F, 0.5F, 0.9F};
static constexpr color empty_cell{0.42F, 0.45F, 0.5F, 0.45F};
static constexpr color arrow_on_pick{0.05F, 0.06F, 0.08F, 1};
static constexpr color tile_fill{0.1F, 0.11F, 0.14F, 1};
static constexpr color tile_outline{0.3F, 0.33F, 0.38F, 0.9F};
static constexpr color tile_text{0.55F, 0.58F, 0.63F, 1}, bright_text{0.95F, 0.96F, 1, 1};
static constexpr color window_fill{0.78F, 0.8F, 0.85F, 0.8F};

static color accent_with(float alpha)
{
    return {g_accent[0], g_accent[1], g_accent[2], alpha};
}

static color bright_accent()
{
    return {0.4F + 0.6F * g_accent[0], 0.4F + 0.6F * g_accent[1], 0.4F + 0.6F * g_accent[2], 1};
}

static wlr_fbox inset(const wlr_fbox &box)
{
    constexpr double by = outline / 2;
    return {.x = box.x + by, .y = box.y + by, .width = box.width - outline, .height = box.height - outline};
}

static void draw_label(cairo_t *cr, const char *name, double x)
{
    cairo_set_color(cr, plain_text);
    draw_centered_text(cr, name, x, label_width, label_baseline);
}

static void draw_arrow(cairo_t *cr, const wlr_fbox &zone, const color &c)
{
    const double x = zone.x + zone.width / 2, y = zone.y + zone.height / 2;
    cairo_move_to(cr, x, y - 4);
    cairo_line_to(cr, x + 4.5, y + 3.5);
    cairo_line_to(cr, x - 4.5, y + 3.5);
    cairo_close_path(cr);
    cairo_set_color(cr, c);
    cairo_fill(cr);
}

static void draw_zone(cairo_t *cr, const mt_zone_def &zone, bool picked)
{
    const wlr_fbox shape = mt_zone_shape(zone);
    fill_round(cr, shape, zone_radius, picked ? accent_with(0.95F) : zone_fill);
    stroke_round(cr, inset(shape), zone_radius, picked ? bright_accent() : zone_outline, outline);
    if (MT_PADS[size_t(zone.pad)].insert)
        draw_arrow(cr, shape, picked ? arrow_on_pick : plain_text);
}

static void draw_empty_cells(cairo_t *cr, int pad)
{
    constexpr double dash = 3;
    cairo_set_dash(cr, &dash, 1, 0);
    for (int col = 1; col <= MT_PADS[size_t(pad)].cols; col++)
        for (int row = 1; row <= MT_PADS[size_t(pad)].rows; row++)
            if (!mt_cell_has_zone(pad, col, row))
                stroke_round(cr, inset(mt_cell_shape(pad, col, row)), zone_radius, empty_cell, outline);
    cairo_set_dash(cr, nullptr, 0, 0);
}

static void draw_pads(cairo_t *cr, const mt_display &display)
{
    fill_round(cr, {0, 0, mt_hud_width, 94}, 16, panel_fill);
    stroke_round(cr, {0.5, 0.5, mt_hud_width - 1, 93}, 16, accent_with(0.55F), 1);
    for (int pad = 0; pad < int(MT_PADS.size()); pad++) {
        draw_label(cr, MT_PADS[size_t(pad)].name, mt_pad_x(pad));
        for (size_t i = 0; i < MT_ZONES.size(); i++)
            if (MT_ZONES[i].pad == pad)
                draw_zone(cr, MT_ZONES[i], display.pick.zone == int(i));
        draw_empty_cells(cr, pad);
    }
}

struct tile_look {
    color line;
    double width;
    color text;
};

static tile_look look_of(const mt_display &display, int index)
{
    if (display.pick.workspace == index)
        return {.line = bright_accent(), .width = outline, .text = bright_text};
    if (display.current_tile == index)
        return {.line = accent_with(0.85F), .width = outline, .text = bright_text};
    return {.line = tile_outline, .width = 1, .text = tile_text};
}

static void draw_number(cairo_t *cr, int number, int x, int y, const color &c)
{
    std::array<char, 12> text{};
    snprintf(text.data(), text.size(), "%d", number);
    cairo_set_color(cr, c);
    cairo_move_to(cr, x, y);
    cairo_show_text(cr, text.data());
}

static void draw_tile(cairo_t *cr, const mt_display &display, int index)
{
    const wlr_box tile = mt_workspace_tile(index);
    const wlr_fbox box{double(tile.x), double(tile.y), double(tile.width), double(tile.height)};
    fill_round(cr, box, tile_radius, display.pick.workspace == index ? accent_with(0.3F) : tile_fill);
    for (const mt_window_sketch &window : display.windows)
        if (window.tile == index)
            fill_round(cr, window.box, 2, window_fill);
    const tile_look look = look_of(display, index);
    stroke_round(cr, {box.x + 0.5, box.y + 0.5, box.width - 1, box.height - 1}, tile_radius, look.line,
                 look.width);
    draw_number(cr, index + 1, tile.x + 31, tile.y + 23, look.text);
}

static void draw_strip(cairo_t *cr, const mt_display &display)
{
    fill_round(cr, {96, 103, 414, 41}, 13, strip_fill);
    stroke_round(cr, {96.5, 103.5, 413, 40}, 13, strip_outline, 1);
    for (int i = 0; i < mt_workspace_tiles; i++)
        draw_tile(cr, display, i);
}

cairo_buffer *mt_render(const mt_display &display)
{
    cairo_t *cr = nullptr;
    cairo_buffer *buffer = cairo_buffer_create(mt_hud_width, mt_hud_height, &cr);
    cairo_select_font_face(cr, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
    cairo_set_font_size(cr, label_size);
    draw_pads(cr, display);
    draw_strip(cr, display);
    cairo_destroy(cr);
    return buffer;
}
