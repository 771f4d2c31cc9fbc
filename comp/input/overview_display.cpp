#include "overview_display.hpp"

#include "../cairo_buffer.hpp"
#include "../color.hpp"
#include "../config/theme.hpp"
#include "../drawing.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../presentation/backdrop_blur.hpp"
#include "../presentation/effects.hpp"
#include "../presentation/live_picture.hpp"
#include "../presentation/overlay.hpp"
#include "../server.hpp"
#include "../windows/toplevel.hpp"
#include "overview_boxes.hpp"
#include "overview_strip.hpp"

static constexpr size_t most_items = 64;
static constexpr int tile_radius = 12, ring_radius = 15, shadow_drop = 3, title_gap = 4;
static constexpr float tile_shadow_sigma = 14, almost_opaque = 0.999F;
static constexpr font title_font{.size = 13};
static constexpr double title_margin = 4;
static constexpr color blurred_backdrop{0.025F, 0.025F, 0.04F, 0.6F},
    plain_backdrop{0.035F, 0.035F, 0.05F, 0.9F};
static constexpr color title_color{0.93F, 0.93F, 0.96F, 0.96F};
static constexpr color badge_fill{0, 0, 0, 0.5F}, badge_cross{0.95F, 0.95F, 0.97F, 0.95F};
static constexpr double cross_from = 7, cross_to = 15, cross_width = 2;

static bool has_tile(const vantore_toplevel &t, const vantore_workspace *ws)
{
    return t.workspace == ws && !t.minimized && tl_mapped(t) && t.scene_tree->node.enabled;
}

static std::vector<vantore_toplevel *> windows_to_show(vantore_server &server, const vantore_workspace *ws)
{
    std::vector<vantore_toplevel *> windows;
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (windows.size() < most_items && has_tile(t, ws))
            windows.push_back(&t);
    return windows;
}

static void add_backdrop(const vantore_overviewing &overview)
{
    const wlr_box screen = output_layout_box(*overview.output);
    const bool blurs = fx_blurs();
    const color &c = blurs ? blurred_backdrop : plain_backdrop;
    wlr_scene_rect *rect = wlr_scene_rect_create(overview.tree, screen.width, screen.height, c.data());
    if (rect == nullptr)
        return;
    rect->accepts_input = false;
    wlr_scene_node_set_position(&rect->node, screen.x, screen.y);
    wlr_scene_blur *blur = nullptr; // the tree owns it
    backdrop_blur_set(blur, rect, blurs);
}

static void add_ring(vantore_overviewing &overview)
{
    overview.ring = wlr_scene_rect_create(overview.tree, 1, 1, overview_accent(overview.opacity).data());
    if (overview.ring == nullptr)
        return;
    overview.ring->accepts_input = false;
    if (fx_on())
        wlr_scene_rect_set_corner_radii(overview.ring, corner_radii_all(ring_radius));
    wlr_scene_node_set_enabled(&overview.ring->node, false);
}

void overview_ring_show(vantore_overviewing &overview, const wlr_box *around, int margin)
{
    if (overview.ring == nullptr)
        return;
    wlr_scene_node_set_enabled(&overview.ring->node, around != nullptr);
    if (around == nullptr)
        return;
    const wlr_box box = overview_around(*around, margin);
    wlr_scene_rect_set_size(overview.ring, box.width, box.height);
    wlr_scene_node_set_position(&overview.ring->node, box.x, box.y);
}

static void add_shadow(wlr_scene_tree *tree, const wlr_box &tile)
{
    wlr_scene_shadow *shadow = wlr_scene_shadow_create(tree, tile.width, tile.height, tile_radius,
                                                       tile_shadow_sigma, g_shadow_color.data());
    if (shadow != nullptr)
        wlr_scene_node_set_position(&shadow->node, tile.x, tile.y + shadow_drop);
}

static wlr_scene_buffer *add_window_picture(const overview_canvas &canvas, vantore_toplevel &t,
                                            const wlr_box &tile)
{
    if (fx_on())
        add_shadow(canvas.tree, tile);
    wlr_scene_buffer *picture = live_picture_create(t, canvas.tree);
    if (picture == nullptr)
        return nullptr;
    wlr_scene_buffer_set_dest_size(picture, tile.width, tile.height);
    wlr_scene_buffer_set_opacity(picture, canvas.opacity);
    wlr_scene_node_set_position(&picture->node, tile.x, tile.y);
    if (fx_on())
        wlr_scene_buffer_set_corner_radii(picture, corner_radii_all(tile_radius));
    return picture;
}

static void add_title(const overview_canvas &canvas, const char *title, const wlr_box &at)
{
    if (title == nullptr || title[0] == '\0')
        return;
    cairo_t *cr = nullptr;
    cairo_buffer *picture = cairo_buffer_create_scaled(at.width, at.height, canvas.scale, &cr);
    overview_draw_line(cr, title_font, title, title_color, at, title_margin);
    cairo_destroy(cr);
    overview_add_picture(canvas, picture, at);
}

static cairo_buffer *draw_close_badge(double scale)
{
    cairo_t *cr = nullptr;
    cairo_buffer *picture = cairo_buffer_create_scaled(overview_badge, overview_badge, scale, &cr);
    overview_fill_badge(cr, badge_fill);
    cairo_set_color(cr, badge_cross);
    cairo_set_line_width(cr, cross_width);
    cairo_move_to(cr, cross_from, cross_from);
    cairo_line_to(cr, cross_to, cross_to);
    cairo_move_to(cr, cross_to, cross_from);
    cairo_line_to(cr, cross_from, cross_to);
    cairo_stroke(cr);
    cairo_destroy(cr);
    return picture;
}

static void add_close_badge(const overview_canvas &canvas, cairo_buffer &picture, const wlr_box &at)
{
    wlr_scene_buffer *badge = wlr_scene_buffer_create(canvas.tree, &picture.base);
    if (badge == nullptr)
        return;
    badge->point_accepts_input = takes_no_input;
    wlr_scene_buffer_set_dest_size(badge, at.width, at.height);
    wlr_scene_node_set_position(&badge->node, at.x, at.y);
}

static overview_item add_item(const overview_canvas &canvas, cairo_buffer &badge_picture, vantore_toplevel &t,
                              const wlr_box &cell, const wlr_box &tile)
{
    const wlr_box badge = overview_close_badge(tile);
    wlr_scene_buffer *picture = add_window_picture(canvas, t, tile);
    add_title(canvas, tl_title(t),
              {.x = cell.x,
               .y = tile.y + tile.height + title_gap,
               .width = cell.width,
               .height = overview_title_height});
    add_close_badge(canvas, badge_picture, badge);
    return {.t = &t, .rect = tile, .node = picture, .close_rect = badge, .start = toplevel_box(t)};
}

static void add_items(vantore_server &server, const overview_canvas &canvas, const wlr_box &area)
{
    vantore_overviewing &overview = server.overview;
    const std::vector<vantore_toplevel *> windows = windows_to_show(server, overview.output->current_ws);
    const overview_grid grid = overview_grid_in(area, int(windows.size()));
    const wlr_box screen = output_layout_box(*overview.output);
    cairo_buffer *badge = draw_close_badge(canvas.scale);
    for (int i = 0; i < grid.count; i++) {
        vantore_toplevel &t = *windows[size_t(i)];
        const wlr_box tile = overview_tile(grid, i, tl_get_geometry(t), screen);
        overview.items.push_back(add_item(canvas, *badge, t, overview_cell(grid, i), tile));
    }
    wlr_buffer_drop(&badge->base); // the nodes keep it
}

void overview_draw(vantore_server &server, vantore_output &o)
{
    vantore_overviewing &overview = server.overview;
    overview.tree = wlr_scene_tree_create(&server.scene->tree);
    if (overview.tree == nullptr)
        return wlr_log(WLR_ERROR, "vantore-comp: no memory for the overview");
    wlr_scene_node_place_below(&overview.tree->node, &server.lock_tree->node);
    // Each node that is shown makes the scene look at all others.
    wlr_scene_node_set_enabled(&overview.tree->node, false);
    overview.output = &o;
    overview.opacity = fx_blurs() ? almost_opaque : 1;
    const overview_canvas canvas{
        .tree = overview.tree, .scale = double(o.wlr_output->scale), .opacity = overview.opacity};
    add_backdrop(overview);
    add_ring(overview);
    overview.ws_items = overview_add_strip(server, canvas, o);
    add_items(server, canvas, overview.ws_items.empty() ? o.usable : overview_beside_strip(o.usable));
    wlr_scene_node_set_enabled(&overview.tree->node, true);
}
