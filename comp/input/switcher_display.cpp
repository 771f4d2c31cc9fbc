#include "switcher_display.hpp"

#include "../cairo_buffer.hpp"
#include "../config/settings.hpp"
#include "../drawing.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../presentation/effects.hpp"
#include "../presentation/live_picture.hpp"
#include "../server.hpp"
#include "../windows/toplevel.hpp"
#include "switcher_boxes.hpp"

static constexpr size_t most_row_bytes = 199;
static constexpr double row_text_left = 22, row_baseline = 22, row_text_width = 476;
static constexpr double card_text_left = 9, card_baseline = 36, card_text_margin = 18;
static constexpr double panel_radius = 14, item_radius = 8;
static constexpr int picture_radius = 6;
static constexpr font row_font{.size = 14}, card_font{.size = 12};
static constexpr color panel_fill{0.09F, 0.10F, 0.13F, 0.96F};
static constexpr color plain_card{1, 1, 1, 0.06F};
static constexpr color plain_text{0.85F, 0.87F, 0.90F, 0.95F};
static constexpr color dark_text{0.06F, 0.07F, 0.08F, 1}, white_text{1, 1, 1, 1};

static bool has_text(const char *text)
{
    return text != nullptr && text[0] != '\0';
}

std::string switcher_row_text(const char *app_id, const char *title, bool minimized)
{
    std::string text = app_id != nullptr ? app_id : "?";
    if (has_text(title))
        text = text + "  —  " + title;
    if (minimized)
        text += "  (minimized)";
    return text.substr(0, most_row_bytes);
}

std::string switcher_card_text(const char *app_id, const char *title, bool minimized)
{
    const char *other = app_id != nullptr ? app_id : "?";
    return std::string{has_text(title) ? title : other} + (minimized ? "  (min)" : "");
}

static color selection_fill(float alpha)
{
    return {g_accent[0] * 0.85F, g_accent[1] * 0.85F, g_accent[2] * 0.85F, alpha};
}

static color selection_text()
{
    const float luminance = 0.299F * g_accent[0] + 0.587F * g_accent[1] + 0.114F * g_accent[2];
    return luminance > 0.6F ? dark_text : white_text;
}

static void show_line(cairo_t *cr, const std::string &text, double x, double y, bool selected)
{
    cairo_set_color(cr, selected ? selection_text() : plain_text);
    cairo_move_to(cr, x, y);
    cairo_show_text(cr, text.c_str());
}

static double scale_at_pointer(vantore_server &server)
{
    const vantore_output *o = output_at(server, server.cursor->x, server.cursor->y);
    return o != nullptr ? double(o->wlr_output->scale) : 1;
}

static wlr_scene_tree *overlay_layer(vantore_server &server)
{
    return server.layers[ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY];
}

static void draw_row(cairo_t *cr, const vantore_toplevel &t, int index, bool selected)
{
    const double y = switcher_list_margin + index * switcher_row_height;
    if (selected)
        fill_round(cr, {item_radius, y + 2, switcher_list_width - 2 * item_radius, switcher_row_height - 2},
                   item_radius, selection_fill(0.85F));
    const std::string text = switcher_row_text(tl_app_id(t), tl_title(t), t.minimized);
    show_line(cr, fitting_text(cr, text, row_text_width), row_text_left, y + row_baseline, selected);
}

static void switcher_draw(vantore_server &server)
{
    vantore_switching &s = server.switching;
    const wlr_box panel = switcher_list(usable_at_cursor(server), int(s.sw_items.size()));
    cairo_t *cr = nullptr;
    cairo_buffer *picture =
        cairo_buffer_create_scaled(panel.width, panel.height, scale_at_pointer(server), &cr);
    fill_round(cr, {0, 0, double(panel.width), double(panel.height)}, panel_radius, panel_fill);
    set_font(cr, row_font);
    for (int i = 0; i < int(s.sw_items.size()); i++)
        draw_row(cr, *s.sw_items[size_t(i)], i, i == s.sw_index);
    cairo_destroy(cr);
    overlay_show(s.sw_overlay, overlay_layer(server), picture, panel);
}

static void draw_card(cairo_t *cr, const vantore_toplevel &t, const wlr_box &card, bool selected)
{
    const wlr_fbox shape{double(card.x), double(card.y), double(card.width), double(card.height)};
    fill_round(cr, shape, item_radius, selected ? selection_fill(0.92F) : plain_card);
    const std::string text = switcher_card_text(tl_app_id(t), tl_title(t), t.minimized);
    show_line(cr, fitting_text(cr, text, card.width - card_text_margin), card.x + card_text_left,
              card_baseline, selected);
}

static cairo_buffer *draw_cards(vantore_server &server, const switcher_cards &cards)
{
    const vantore_switching &s = server.switching;
    const double w = cards.panel.width, h = cards.panel.height;
    cairo_t *cr = nullptr;
    cairo_buffer *picture =
        cairo_buffer_create_scaled(cards.panel.width, cards.panel.height, scale_at_pointer(server), &cr);
    fill_round(cr, {0.5, 0.5, w - 1, h - 1}, panel_radius, panel_fill);
    set_font(cr, card_font);
    for (int i = 0; i < cards.count; i++)
        draw_card(cr, *s.sw_items[size_t(i)], switcher_card(cards, i), i == s.sw_index);
    cairo_destroy(cr);
    return picture;
}

static void add_picture(wlr_scene_tree *tree, vantore_toplevel &t, const switcher_cards &cards, int index)
{
    wlr_scene_buffer *picture = live_picture_create(t, tree);
    if (picture == nullptr)
        return;
    const wlr_box place = switcher_picture(cards, index, tl_get_geometry(t));
    wlr_scene_buffer_set_dest_size(picture, place.width, place.height);
    wlr_scene_node_set_position(&picture->node, place.x, place.y);
    if (fx_on())
        wlr_scene_buffer_set_corner_radii(picture, corner_radii_all(picture_radius));
}

static void switcher_thumbs_teardown(vantore_switching &s)
{
    if (s.sw_tree != nullptr)
        wlr_scene_node_destroy(&s.sw_tree->node);
    s.sw_tree = nullptr;
}

static void switcher_draw_thumbs(vantore_server &server)
{
    vantore_switching &s = server.switching;
    switcher_thumbs_teardown(s);
    s.sw_tree = wlr_scene_tree_create(overlay_layer(server));
    if (s.sw_tree == nullptr)
        return;
    const switcher_cards cards = switcher_cards_in(usable_at_cursor(server), int(s.sw_items.size()));
    overlay panel; // the tree owns its node
    overlay_show(panel, s.sw_tree, draw_cards(server, cards), cards.panel);
    for (int i = 0; i < cards.count; i++)
        add_picture(s.sw_tree, *s.sw_items[size_t(i)], cards, i);
}

static void frame_hide(const vantore_switching &s)
{
    for (wlr_scene_rect *side : s.sw_frame)
        if (side != nullptr)
            wlr_scene_node_set_enabled(&side->node, false);
}

static void frame_side_show(wlr_scene_rect *&side, wlr_scene_tree *layer, const wlr_box &box)
{
    const color premultiplied{g_accent[0] * 0.9F, g_accent[1] * 0.9F, g_accent[2] * 0.9F, 0.9F};
    if (side == nullptr)
        side = wlr_scene_rect_create(layer, box.width, box.height, premultiplied.data());
    if (side == nullptr)
        return;
    side->accepts_input = false;
    wlr_scene_rect_set_color(side, premultiplied.data()); // the accent may have changed
    wlr_scene_rect_set_size(side, box.width, box.height);
    wlr_scene_node_set_position(&side->node, box.x, box.y);
    wlr_scene_node_raise_to_top(&side->node);
    wlr_scene_node_set_enabled(&side->node, true);
}

static void switcher_frame_update(vantore_server &server)
{
    vantore_switching &s = server.switching;
    const vantore_toplevel &t = *s.sw_items[size_t(s.sw_index)];
    if (t.minimized)
        return frame_hide(s);
    const std::array<wlr_box, 4> sides = switcher_frame(toplevel_box(t), titlebar_of(t));
    for (size_t i = 0; i < sides.size(); i++)
        frame_side_show(s.sw_frame[i], overlay_layer(server), sides[i]);
}

void switcher_show(vantore_server &server)
{
    switcher_frame_update(server);
    if (server.switching.sw_thumbs)
        switcher_draw_thumbs(server);
    else
        switcher_draw(server);
}

void switcher_hide(vantore_switching &s)
{
    overlay_hide(s.sw_overlay);
    switcher_thumbs_teardown(s);
    frame_hide(s);
}
