#include "decorations.hpp"

#include "../cairo_buffer.hpp"
#include "../config/settings.hpp"
#include "../config/theme.hpp"
#include "../input/resting_pointer.hpp"
#include "../server.hpp"
#include "../utf8.hpp"
#include "../windows/reach.hpp"
#include "../windows/toplevel.hpp"
#include "backdrop_blur.hpp"
#include "effects.hpp"

#include <algorithm>

static constexpr int title_right_margin = 73; // space for the buttons
static constexpr double title_font_size = 14;
static constexpr int title_x = 10;

static constexpr int hover_width = 28, hover_height = 24, hover_radius = 6;
static constexpr int hover_y = -27, hover_left = 7; // relative to its button
static constexpr color close_hover{0.72F, 0.15F, 0.15F, 0.92F};
static constexpr color other_hover{0.16F, 0.16F, 0.18F, 0.16F};

static constexpr int grip_size = 16;
static constexpr color grip_color{0.85F, 0.85F, 0.90F, 0.55F};

static constexpr float see_through = 0.62F; // of a bar whose background is blurred

static bool add_buffer(vantore_toplevel &t, wlr_scene_buffer *&field)
{
    field = wlr_scene_buffer_create(t.scene_tree, nullptr);
    if (field == nullptr)
        return false;
    wlr_scene_node_set_enabled(&field->node, false);
    return true;
}

static bool add_rect(vantore_toplevel &t, wlr_scene_rect *&field, int w, int h, const color &c)
{
    field = wlr_scene_rect_create(t.scene_tree, w, h, c.data());
    if (field == nullptr)
        return false;
    wlr_scene_node_set_enabled(&field->node, false);
    return true;
}

static void render_grip(wlr_scene_buffer *node)
{
    cairo_t *cr = nullptr;
    cairo_buffer *buffer = cairo_buffer_create(grip_size, grip_size, &cr);
    cairo_set_color(cr, grip_color);
    cairo_set_line_width(cr, 1.3);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    for (const int v : {12, 8, 4}) {
        cairo_move_to(cr, 14, v);
        cairo_line_to(cr, v, 14);
    }
    cairo_stroke(cr);
    cairo_destroy(cr);
    scene_buffer_set_cairo(node, buffer);
}

static void render_buttons(vantore_toplevel &t)
{
    dec_render_button(t.btn_min, DEC_MINIMIZE, false);
    dec_refresh_max_button(t);
    dec_render_button(t.btn_close, DEC_CLOSE, false);
}

// Creates the nodes in stacking order, the lowest first.
bool dec_create_nodes(vantore_toplevel &t)
{
    static constexpr color nothing{};
    t.titlebar_blur = nullptr;
    t.shadow = nullptr;
    t.dim_rect = nullptr;
    t.dimmed = true;
    t.hover_region = DEC_NONE;
    if (!add_rect(t, t.titlebar, 1, titlebar_height, g_tb_unfocus) ||
        !add_rect(t, t.btn_hover, 1, 1, nothing) || !add_buffer(t, t.title) || !add_buffer(t, t.btn_min) ||
        !add_buffer(t, t.btn_max) || !add_buffer(t, t.btn_close) || !add_buffer(t, t.grip) ||
        !add_buffer(t, t.tabbar))
        return false;
    render_buttons(t);
    render_grip(t.grip);
    dec_forget_title(t);
    return true;
}

void dec_forget_title(vantore_toplevel &t)
{
    t.title_w = -1;
}

// Cairo stops drawing after bytes that are not UTF-8.
static void draw_title(cairo_t *cr, const char *title)
{
    cairo_select_font_face(cr, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, title_font_size);
    cairo_set_color(cr, g_tb_fg);
    cairo_font_extents_t font;
    cairo_font_extents(cr, &font);
    cairo_move_to(cr, title_x, (titlebar_height + font.ascent - font.descent) / 2);
    cairo_show_text(cr, valid_utf8(title).c_str());
}

void dec_render_title(vantore_toplevel &t, int width)
{
    t.title_w = std::max(width, 1);
    cairo_t *cr = nullptr;
    cairo_buffer *buffer = cairo_buffer_create(t.title_w, titlebar_height, &cr);
    if (const char *title = tl_title(t); title != nullptr && *title != '\0')
        draw_title(cr, title);
    cairo_destroy(cr);
    scene_buffer_set_cairo(t.title, buffer);
}

void dec_refresh_title(vantore_toplevel &t)
{
    dec_render_title(t, t.title_w);
}

static void draw_maximize(cairo_t *cr)
{
    cairo_rectangle(cr, 3.5, 3.5, 7, 7);
    cairo_stroke(cr);
}

static void draw_restore(cairo_t *cr)
{
    cairo_move_to(cr, 6.5, 6);
    cairo_line_to(cr, 6.5, 3.5);
    cairo_line_to(cr, 10.5, 3.5);
    cairo_line_to(cr, 10.5, 7.5);
    cairo_line_to(cr, 8, 7.5);
    cairo_stroke(cr);
    cairo_rectangle(cr, 3.5, 6.5, 4, 4);
    cairo_stroke(cr);
}

static void draw_minimize(cairo_t *cr)
{
    cairo_move_to(cr, 3.5, 7);
    cairo_line_to(cr, 10.5, 7);
    cairo_stroke(cr);
}

static void draw_cross(cairo_t *cr)
{
    cairo_move_to(cr, 3.5, 3.5);
    cairo_line_to(cr, 10.5, 10.5);
    cairo_move_to(cr, 10.5, 3.5);
    cairo_line_to(cr, 3.5, 10.5);
    cairo_stroke(cr);
}

static void draw_glyph(cairo_t *cr, vantore_dec_region region, bool alt)
{
    if (region == DEC_MINIMIZE)
        draw_minimize(cr);
    else if (region == DEC_MAXIMIZE && alt)
        draw_restore(cr);
    else if (region == DEC_MAXIMIZE)
        draw_maximize(cr);
    else
        draw_cross(cr);
}

void dec_render_button(wlr_scene_buffer *node, vantore_dec_region region, bool alt)
{
    if (node == nullptr)
        return;
    cairo_t *cr = nullptr;
    cairo_buffer *buffer = cairo_buffer_create(dec_button_size, dec_button_size, &cr);
    cairo_set_color(cr, g_tb_fg);
    cairo_set_line_width(cr, 1.4);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    draw_glyph(cr, region, alt);
    cairo_destroy(cr);
    scene_buffer_set_cairo(node, buffer);
}

void dec_refresh_max_button(vantore_toplevel &t)
{
    dec_render_button(t.btn_max, DEC_MAXIMIZE, t.maximized);
}

// A stacked window shows tabs instead of the bar.
static bool shows_bar(const vantore_toplevel &t)
{
    return t.ssd && !t.fullscreen && t.stack_id == 0;
}

static void clear_hover(vantore_toplevel &t)
{
    wlr_scene_node_set_enabled(&t.btn_hover->node, false);
    t.hover_region = DEC_NONE;
}

static void place_bar(vantore_toplevel &t, int w)
{
    wlr_scene_rect_set_size(t.titlebar, w, titlebar_height);
    wlr_scene_node_set_position(&t.titlebar->node, 0, -titlebar_height);
    wlr_scene_node_set_position(&t.title->node, 0, -titlebar_height);
    wlr_scene_node_set_position(&t.btn_min->node, dec_button_x(w, DEC_MINIMIZE), dec_button_y);
    wlr_scene_node_set_position(&t.btn_max->node, dec_button_x(w, DEC_MAXIMIZE), dec_button_y);
    wlr_scene_node_set_position(&t.btn_close->node, dec_button_x(w, DEC_CLOSE), dec_button_y);
}

void dec_layout(vantore_toplevel &t)
{
    effects_layout(t);
    const bool shown = shows_bar(t);
    if (shown != t.titlebar->node.enabled)
        pointer_look_again(*t.server);
    for (wlr_scene_node *node :
         {&t.titlebar->node, &t.title->node, &t.btn_min->node, &t.btn_max->node, &t.btn_close->node})
        wlr_scene_node_set_enabled(node, shown);
    wlr_scene_node_set_enabled(&t.grip->node, false);
    if (!shown) {
        clear_hover(t);
    } else {
        const int w = tl_shown_width(t);
        place_bar(t, w);
        if (const int title_w = std::max(w - title_right_margin, 1); title_w != t.title_w) {
            dec_render_title(t, title_w);
            clear_hover(t); // the buttons may have moved away from the pointer
        }
    }
    backdrop_blur_follow(t.titlebar_blur, t.titlebar);
    note_reach(t);
}

void dec_set_focused(vantore_toplevel &t, bool focused)
{
    color c = focused ? g_tb_focus : g_tb_unfocus;
    const bool blurred = fx_blurs();
    if (blurred)
        c = {c[0] * see_through, c[1] * see_through, c[2] * see_through, see_through};
    wlr_scene_rect_set_color(t.titlebar, c.data());
    backdrop_blur_set(t.titlebar_blur, t.titlebar, blurred);
    t.dimmed = !focused;
    effects_follow_focus(t);
}

void dec_hover_set(vantore_toplevel &t, vantore_dec_region region)
{
    if (region == t.hover_region)
        return;
    t.hover_region = region;
    const bool button = region == DEC_CLOSE || region == DEC_MINIMIZE || region == DEC_MAXIMIZE;
    if (button) {
        const color &c = region == DEC_CLOSE ? close_hover : other_hover;
        wlr_scene_rect_set_color(t.btn_hover, c.data());
        wlr_scene_rect_set_corner_radius(t.btn_hover, hover_radius);
        wlr_scene_rect_set_size(t.btn_hover, hover_width, hover_height);
        wlr_scene_node_set_position(&t.btn_hover->node, dec_button_x(tl_shown_width(t), region) - hover_left,
                                    hover_y);
    }
    wlr_scene_node_set_enabled(&t.btn_hover->node, button);
}

void dec_recolor(vantore_toplevel &t, bool focused)
{
    render_buttons(t);
    dec_forget_title(t);
    dec_layout(t);
    dec_set_focused(t, focused);
}

void recolor_all_decorations(vantore_server &server)
{
    const vantore_toplevel *first = each<&vantore_toplevel::link>(server.toplevels).first();
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
        dec_recolor(t, &t == first);
}
