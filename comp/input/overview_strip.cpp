#include "overview_strip.hpp"

#include "../cairo_buffer.hpp"
#include "../config/settings.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../presentation/effects.hpp"
#include "../server.hpp"
#include "../text.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/switch.hpp"
#include "../workspaces/workspace.hpp"
#include "overview_boxes.hpp"

#include <algorithm>
#include <string>

static constexpr size_t most_workspaces = 16;
static constexpr int frame_width = 3, frame_radius = 11, rounded_radius = 9, plain_radius = 6;
static constexpr int badge_inset = 5, name_gap = 2;
static constexpr double sketch_radius = 2, sketch_line = 0.75, name_margin = 2;
static constexpr font number_font{.size = 12, .weight = CAIRO_FONT_WEIGHT_BOLD}, name_font{.size = 13};
static constexpr color thumbnail_fill{0.12F, 0.12F, 0.16F, 0.92F};
static constexpr color sketch_fill{0.78F, 0.80F, 0.85F, 0.85F}, sketch_outline{0.3F, 0.33F, 0.38F, 0.9F};
static constexpr color badge_fill{0, 0, 0, 0.42F}, number_color{0.95F, 0.95F, 0.97F, 0.95F};
static constexpr color name_color{0.9F, 0.9F, 0.93F, 0.95F};

// Whether the workspace is on the output or would appear there.
static bool belongs_to(const vantore_workspace &ws, const vantore_output &o)
{
    if (ws.output != nullptr)
        return ws.output == &o;
    const vantore_output *home = home_of(ws);
    return home == nullptr || home == &o;
}

bool overview_ws_has_windows(vantore_server &server, const vantore_workspace &ws)
{
    for (const auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (t.workspace == &ws && !t.minimized)
            return true;
    return false;
}

static bool has_real_name(const vantore_workspace &ws)
{
    return text_of(ws.name) != std::to_string(ws.num);
}

static std::vector<vantore_workspace *> workspaces_to_show(vantore_server &server, const vantore_output &o)
{
    std::vector<vantore_workspace *> shown;
    vantore_workspace *empty = nullptr;
    for (auto &ws : each<&vantore_workspace::link>(server.workspaces)) {
        if (!belongs_to(ws, o))
            continue;
        if (&ws != o.current_ws && !overview_ws_has_windows(server, ws))
            empty = empty != nullptr ? empty : &ws;
        else if (shown.size() < most_workspaces)
            shown.push_back(&ws);
    }
    if (empty != nullptr && shown.size() < most_workspaces)
        shown.push_back(empty);
    std::ranges::sort(shown, {}, &vantore_workspace::num);
    return shown;
}

// What the thumbnails have in common.
struct strip {
    vantore_server &server;
    const overview_canvas &canvas;
    const vantore_workspace *current;
    wlr_box screen;
    overview_strip layout;
    bool named;
};

static void add_frame(const strip &s, const wlr_box &thumbnail)
{
    const wlr_box box = overview_around(thumbnail, frame_width);
    wlr_scene_rect *frame =
        wlr_scene_rect_create(s.canvas.tree, box.width, box.height, overview_accent(s.canvas.opacity).data());
    if (frame == nullptr)
        return;
    frame->accepts_input = false;
    wlr_scene_node_set_position(&frame->node, box.x, box.y);
    if (fx_on())
        wlr_scene_rect_set_corner_radii(frame, corner_radii_all(frame_radius));
}

static void draw_windows(cairo_t *cr, const strip &s, const vantore_workspace &ws)
{
    for (const auto &t : each<&vantore_toplevel::link>(s.server.toplevels)) {
        if (t.workspace != &ws || t.minimized || !tl_mapped(t))
            continue;
        const auto sketch = overview_sketch(s.layout, toplevel_box(t), s.screen);
        if (!sketch)
            continue;
        const wlr_fbox shape{double(sketch->x), double(sketch->y), double(sketch->width),
                             double(sketch->height)};
        fill_round(cr, shape, sketch_radius, sketch_fill);
        stroke_round(cr, shape, sketch_radius, sketch_outline, sketch_line);
    }
}

static void add_thumbnail(const strip &s, const vantore_workspace &ws, const wlr_box &at)
{
    cairo_t *cr = nullptr;
    cairo_buffer *picture = cairo_buffer_create_scaled(at.width, at.height, s.canvas.scale, &cr);
    fill_round(cr, {0.5, 0.5, at.width - 1.0, at.height - 1.0}, fx_on() ? rounded_radius : plain_radius,
               thumbnail_fill);
    draw_windows(cr, s, ws);
    cairo_destroy(cr);
    overview_add_picture(s.canvas, picture, at);
}

// The current workspace's number stands out by its colour, the others' by a disc.
static void add_number(const strip &s, const vantore_workspace &ws, const wlr_box &thumbnail)
{
    const wlr_box at{.x = thumbnail.x + badge_inset,
                     .y = thumbnail.y + badge_inset,
                     .width = overview_badge,
                     .height = overview_badge};
    const bool is_current = &ws == s.current;
    cairo_t *cr = nullptr;
    cairo_buffer *picture = cairo_buffer_create_scaled(at.width, at.height, s.canvas.scale, &cr);
    if (!is_current)
        overview_fill_badge(cr, badge_fill);
    set_font(cr, number_font);
    cairo_set_color(cr, is_current && g_accent_set ? overview_accent(1) : number_color);
    const std::string number = std::to_string(ws.num);
    const cairo_text_extents_t extents = text_extents(cr, number);
    draw_centered_text(cr, number.c_str(), 0, at.width, (at.height - extents.height) / 2 - extents.y_bearing);
    cairo_destroy(cr);
    overview_add_picture(s.canvas, picture, at);
}

static void add_name(const strip &s, const vantore_workspace &ws, const wlr_box &thumbnail)
{
    if (!s.named || !has_real_name(ws))
        return;
    const wlr_box at{.x = thumbnail.x,
                     .y = thumbnail.y + thumbnail.height + name_gap,
                     .width = thumbnail.width,
                     .height = overview_name_height};
    cairo_t *cr = nullptr;
    cairo_buffer *picture = cairo_buffer_create_scaled(at.width, at.height, s.canvas.scale, &cr);
    overview_draw_line(cr, name_font, text_of(ws.name), &ws == s.current ? overview_accent(1) : name_color,
                       at, name_margin);
    cairo_destroy(cr);
    overview_add_picture(s.canvas, picture, at);
}

std::vector<overview_workspace> overview_add_strip(vantore_server &server, const overview_canvas &canvas,
                                                   const vantore_output &o)
{
    std::vector<overview_workspace> items;
    const wlr_box screen = output_layout_box(o);
    const std::vector<vantore_workspace *> workspaces = workspaces_to_show(server, o);
    if (screen.width < 1 || screen.height < 1 || workspaces.empty())
        return items;
    const bool named = std::ranges::any_of(workspaces, [](const auto *ws) { return has_real_name(*ws); });
    const strip s{.server = server,
                  .canvas = canvas,
                  .current = o.current_ws,
                  .screen = screen,
                  .layout = overview_strip_in(o.usable, screen, int(workspaces.size()), named),
                  .named = named};
    for (vantore_workspace *ws : workspaces) {
        const wlr_box at = overview_thumbnail(s.layout, int(items.size()));
        if (ws == s.current)
            add_frame(s, at);
        add_thumbnail(s, *ws, at);
        add_number(s, *ws, at);
        add_name(s, *ws, at);
        items.push_back({.workspace = ws, .box = at});
    }
    return items;
}
