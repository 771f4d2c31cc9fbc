#include "replay_osd.hpp"

#include "../cairo_buffer.hpp"
#include "../config/settings.hpp"
#include "../drawing.hpp"
#include "../server.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/workspace.hpp"
#include "lookup.hpp"
#include "output.hpp"

#include <algorithm>

static constexpr int shown_ms = 2600;
static constexpr int text_left = 33, around_text = 8 + 9 + 32, dot_x = 20, dot_radius = 4;
static constexpr int least_height = 34, padding = 20, below_top = 56;
static constexpr font message_font{.size = 15, .weight = CAIRO_FONT_WEIGHT_BOLD};
static constexpr color fill{0.07F, 0.08F, 0.10F, 0.88F};
static constexpr color text_color{0.95F, 0.95F, 0.97F, 0.97F};
static constexpr color dot_without_accent{0.62F, 0.55F, 0.95F, 1};

wlr_box replay_osd_size(double text_width, double text_height)
{
    return {.x = 0,
            .y = 0,
            .width = int(around_text + text_width),
            .height = std::max(least_height, int(padding + text_height))};
}

wlr_box replay_osd_place(const wlr_box &output, const wlr_box &size)
{
    return {.x = output.x + (output.width - size.width) / 2,
            .y = output.y + below_top,
            .width = size.width,
            .height = size.height};
}

// The player of a game looks at the game.
static vantore_output *output_to_use(vantore_server &server)
{
    for (const auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (t.fullscreen && output_showing(t) != nullptr)
            return output_showing(t);
    return output_at(server, server.cursor->x, server.cursor->y);
}

static cairo_buffer *draw_pill(const std::string &text, const wlr_box &size, double scale)
{
    cairo_t *cr = nullptr;
    cairo_buffer *picture = cairo_buffer_create_scaled(size.width, size.height, scale, &cr);
    const double w = size.width, h = size.height;
    fill_round(cr, {0.5, 0.5, w - 1, h - 1}, h / 2, fill);
    const color dot = g_accent_set ? color{g_accent[0], g_accent[1], g_accent[2], 1} : dot_without_accent;
    fill_round(cr, {dot_x - dot_radius, h / 2 - dot_radius, 2 * dot_radius, 2 * dot_radius}, dot_radius, dot);
    set_font(cr, message_font);
    const cairo_text_extents_t extents = text_extents(cr, text);
    cairo_set_color(cr, text_color);
    cairo_move_to(cr, text_left - extents.x_bearing, (h - extents.height) / 2 - extents.y_bearing);
    cairo_show_text(cr, text.c_str());
    cairo_destroy(cr);
    return picture;
}

static int replay_osd_hide(void *data)
{
    overlay_hide(static_cast<vantore_server *>(data)->on_screen.replay_osd);
    return 0;
}

static void arm_timer(vantore_server &server)
{
    timer_source &timer = server.on_screen.replay_osd_timer;
    if (timer == nullptr)
        timer = timer_create(server.display, replay_osd_hide, &server);
    timer_arm(timer, shown_ms);
}

void replay_osd_show(vantore_server &server, std::string_view text)
{
    const vantore_output *o = output_to_use(server);
    if (text.empty() || o == nullptr)
        return;
    const wlr_box screen = output_layout_box(*o);
    if (screen.width <= 0)
        return;
    const auto scale = double(o->wlr_output->scale);
    const auto measuring = measuring_context(message_font, scale);
    const std::string fitting = fitting_text(measuring.get(), text, screen.width - around_text);
    const cairo_text_extents_t extents = text_extents(measuring.get(), fitting);
    const wlr_box place = replay_osd_place(screen, replay_osd_size(extents.width, extents.height));
    wlr_scene_tree *layer = server.layers[ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY];
    overlay_show(server.on_screen.replay_osd, layer, draw_pill(fitting, place, scale), place);
    arm_timer(server);
}
