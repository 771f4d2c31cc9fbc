#include "identify.hpp"

#include "../cairo_buffer.hpp"
#include "../config/settings.hpp"
#include "../drawing.hpp"
#include "../server.hpp"
#include "../utf8.hpp"
#include "lookup.hpp"
#include "output.hpp"

#include <algorithm>
#include <format>

static constexpr long least_seconds = 1, most_seconds = 30;
static constexpr int around_text = 104, around_lines = 78, above_name = 34, above_subtitle = 44;
static constexpr int radius = 24, border = 3;
static constexpr font name_font{.size = 64, .weight = CAIRO_FONT_WEIGHT_BOLD}, subtitle_font{.size = 22};
static constexpr color fill{0.05F, 0.06F, 0.08F, 0.88F};
static constexpr color border_without_accent{0.3F, 0.55F, 0.95F, 0.95F};
static constexpr color name_color{1, 1, 1, 1}, subtitle_color{0.82F, 0.85F, 0.90F, 1};

std::string identify_subtitle(const char *model, int width, int height, int refresh_mhz)
{
    const std::string mode = std::format("{}×{}@{}Hz", width, height, (refresh_mhz + 500) / 1000);
    return model != nullptr && model[0] != '\0' ? valid_utf8(model) + " · " + mode : mode;
}

struct line_size {
    double width;
    int height; // of the font
};

struct badge {
    std::string name, subtitle;
    line_size name_size, subtitle_size;
    int width, height;
};

static line_size size_of_line(const font &f, const std::string &text, double scale)
{
    const auto measuring = measuring_context(f, scale);
    const cairo_font_extents_t letters = font_extents(measuring.get());
    return {.width = text_extents(measuring.get(), text).width,
            .height = int(letters.ascent + letters.descent)};
}

static badge badge_of(const struct wlr_output &output)
{
    badge b{.name = valid_utf8(output_name(&output)),
            .subtitle = identify_subtitle(output.model, output.width, output.height, output.refresh),
            .name_size = {},
            .subtitle_size = {},
            .width = 0,
            .height = 0};
    b.name_size = size_of_line(name_font, b.name, double(output.scale));
    b.subtitle_size = size_of_line(subtitle_font, b.subtitle, double(output.scale));
    b.width = int(std::max(b.name_size.width, b.subtitle_size.width)) + around_text;
    b.height = b.name_size.height + b.subtitle_size.height + around_lines;
    return b;
}

static void draw_line(cairo_t *cr, const badge &b, const font &f, const std::string &text, const color &c,
                      int top)
{
    set_font(cr, f);
    cairo_set_color(cr, c);
    draw_centered_text(cr, text.c_str(), 0, b.width, top + font_extents(cr).ascent);
}

static cairo_buffer *draw_badge(const badge &b, double scale)
{
    cairo_t *cr = nullptr;
    cairo_buffer *picture = cairo_buffer_create_scaled(b.width, b.height, scale, &cr);
    constexpr double inset = border / 2.0;
    const wlr_fbox shape{inset, inset, b.width - 2 * inset, b.height - 2 * inset};
    fill_round(cr, shape, radius, fill);
    stroke_round(cr, shape, radius,
                 g_accent_set ? color{g_accent[0], g_accent[1], g_accent[2], 0.95F} : border_without_accent,
                 border);
    draw_line(cr, b, name_font, b.name, name_color, above_name);
    draw_line(cr, b, subtitle_font, b.subtitle, subtitle_color, b.name_size.height + above_subtitle);
    cairo_destroy(cr);
    return picture;
}

static void identify_render_output(vantore_server &server, vantore_output &o)
{
    const badge b = badge_of(*o.wlr_output);
    const wlr_box screen = output_layout_box(o);
    const wlr_box place{.x = screen.x + (screen.width - b.width) / 2,
                        .y = screen.y + (screen.height - b.height) / 2,
                        .width = b.width,
                        .height = b.height};
    overlay shown;
    overlay_show(shown, server.layers[ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY],
                 draw_badge(b, double(o.wlr_output->scale)), place);
    o.ident_buf = shown.node;
}

void identify_output_leaves(vantore_output &o)
{
    if (o.ident_buf != nullptr)
        wlr_scene_node_destroy(&o.ident_buf->node);
    o.ident_buf = nullptr;
}

void identify_clear(vantore_server &server)
{
    for (auto &o : each<&vantore_output::link>(server.outputs))
        identify_output_leaves(o);
}

static int identify_expire(void *data)
{
    identify_clear(*static_cast<vantore_server *>(data));
    return 0;
}

static void arm_timer(vantore_server &server, long seconds)
{
    timer_source &timer = server.on_screen.ident_timer;
    if (timer == nullptr)
        timer = timer_create(server.display, identify_expire, &server);
    timer_arm(timer, int(seconds) * 1000);
}

void identify_show(vantore_server &server, long seconds)
{
    identify_clear(server);
    for (auto &o : each<&vantore_output::link>(server.outputs))
        if (shows_desktop(o))
            identify_render_output(server, o);
    arm_timer(server, std::clamp(seconds, least_seconds, most_seconds));
}
