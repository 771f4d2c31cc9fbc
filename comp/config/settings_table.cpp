#include "settings_table.hpp"

#include "../server.hpp"
#include "../text.hpp"
#include "files.hpp"
#include "words.hpp"

#include <algorithm>
#include <limits>

static constexpr std::array default_accent{76 / 255.0F, 191 / 255.0F, 115 / 255.0F, 1.0F}; // 4cbf73
static constexpr int default_interval_s = 600;
static constexpr const char *same_as_all = "as for all";
static constexpr word_text interval_text{"seconds, 1 or more", "`600`"};
static constexpr word_text mode_text{"`fill`, `fit`, `stretch` or `center`", "`fill`"};

static bool is_not_bottom(const char *value)
{
    return std::string_view{value} != "bottom";
}

static bool is_flat(const char *value)
{
    return std::string_view{value} == "flat";
}

static void take_interval(int &stored, const char *value)
{
    if (const int seconds = cfg_int(value); seconds >= 1)
        stored = seconds;
}

static void take_dark(const char *value)
{
    if (!g_saw_theme_key)
        g_theme_kind = cfg_bool(value) ? 1 : 0;
}

static void take_theme(const char *value)
{
    const std::string_view text{value};
    g_saw_theme_key = true;
    if (text == "light")
        g_theme_kind = 0;
    else
        g_theme_kind = text == "dark" || text == "high_contrast" ? 2 : 1;
}

static void reset_theme()
{
    g_theme_kind = 1;
    g_saw_theme_key = false;
}

static void take_accent(const char *value)
{
    if (cfg_color(value, g_accent))
        g_accent_set = true;
}

static void reset_accent()
{
    g_accent = default_accent;
    g_accent_set = true;
}

static void take_screens(const char *value)
{
    const std::string_view text{value};
    if (text == "all") {
        g_panel_screens = PANEL_SCREENS_ALL;
    } else if (text == "primary") {
        g_panel_screens = PANEL_SCREENS_PRIMARY;
    } else {
        g_panel_screens = PANEL_SCREENS_NAMED;
        copy_text(g_panel_screen_name, text);
    }
}

static void reset_screens()
{
    g_panel_screens = PANEL_SCREENS_ALL;
    copy_text(g_panel_screen_name, "");
}

template <class T> static constexpr number_setting<T> unlimited(T &stored, T initial)
{
    return {&stored, initial, std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max()};
}

using enum setting_file;
using flag = flag_setting;
using text = text_setting;
using whole = number_setting<int>;

static constexpr setting table[]{
    {compositor, "modifier", "",
     server_setting{&vantore_server::wm_modifier,
                    WLR_MODIFIER_LOGO,
                    cfg_modifier,
                    {"`super`, `alt`, `ctrl` or `control`, in any case", "`super`"}},
     "the `$mod` of key bindings; `VANTORE_MOD` in the environment overrides it", on_load::keeps},
    {compositor, "gaps", "gap", whole{&g_gap, 8, 0, 200},
     "pixels between tiled windows, and between them and the screen's edge"},
    {compositor, "master_ratio", "", number_setting<double>{&g_default_master, 0.55, 0.1, 0.9},
     "the master tile's share of the width"},
    {compositor, "default_layout", "",
     word_setting<vantore_layout>{&g_default_layout,
                                  VANTORE_LAYOUT_FLOATING,
                                  cfg_layout,
                                  {"`floating`, `tiling` or `tile`, in any case", "`floating`"}},
     "the layout of workspaces that have none in workspaces.conf"},
    {compositor, "overview", "", flag{&g_overview_enabled, true},
     "the overview of all windows can be opened"},
    {compositor, "allow_tearing", "", flag{&g_allow_tearing, true},
     "a fullscreen client that asks for tearing gets it"},
    {compositor, "game_tearing", "", flag{&g_game_tearing, false},
     "a fullscreen client that only declares itself a game gets it too"},
    {compositor, "presentation_time", "", flag{&g_presentation_time, true},
     "offer exact frame times to clients; read only when the session starts"},
    {compositor, "desktop_icons", "", flag{&g_desktop_icons, true}, "icons on the desktop of each output"},
    {compositor, "vrr", "", flag{&g_vrr, false}, "adaptive sync on outputs that appear"},
    {compositor, "x_primary", "", text{g_x_primary}, "the output that X11 programs see as the primary one"},
    {compositor, "primary", "", text{g_primary_pref},
     "the primary output, by name or token id; empty for the first that is on"},
    {compositor, "debug_input", "", flag{&g_debug_input, false}, "log where pointer buttons go"},
    {compositor, "max_render_time", "",
     word_setting<int>{
         &g_max_render_time, -1, cfg_max_render_time, {"`auto`, `off`, `false` or 0 to 100", "`auto`"}},
     "how many milliseconds before it is due a frame is painted; `auto` measures, `off` paints at once"},
    {compositor, "gestures", "", flag{&g_gestures, true},
     "swipes of three fingers; a line in input.conf overrides this one"},
    {compositor, "focus_follows_mouse", "", flag{&g_focus_follows_mouse, false},
     "a window gets the focus when the pointer moves over it"},
    {compositor, "resize_border", "", whole{&g_resize_border, 8, 0, 32},
     "pixels at the left, right and bottom edges of floating windows that resize them; 0 for none"},
    {compositor, "protect_focus", "", flag{&g_protect_focus, false},
     "X11 menus, tooltips and notifications do not take the keyboard, other X11 windows that place "
     "themselves "
     "give it back, and panels that take it on demand do so only when they appear and when they are clicked"},
    {compositor, "game_output", "", text{g_game_output},
     "the output for fullscreen X11 games; empty for the window's own"},
    {compositor, "shadows", "", flag{&g_shadows, true}, "shadows under floating windows"},
    {compositor, "corner_radius", "", whole{&g_corner_radius, 10, 0, 40}, "pixels; 0 for square corners"},
    {compositor, "blur", "", flag{&g_blur, false},
     "blur behind title bars, the panel `vantore-panel` and the overview"},
    {compositor, "glow", "", flag{&g_glow, false},
     "the focused floating window's shadow has the accent colour"},
    {compositor, "tiler", "", flag{&g_tiler, true}, "dragging a window offers places to drop it"},
    {compositor, "tiler_pos", "",
     word_setting<bool>{&g_tiler_top, true, is_not_bottom, {"`top` or `bottom`", "`top`"}},
     "where these places are offered"},
    {compositor, "dim_inactive", "", number_setting<float>{&g_dim_inactive, 0, 0, 0.6F},
     "how much windows without the focus are darkened; 0 for not at all"},
    {compositor, "animations", "", flag{&g_animations, true}, "windows fade and workspaces slide"},
    {compositor, "force_effects", "", flag{&g_force_effects, false},
     "keep effects even with software rendering"},
    {compositor, "cursor_theme", "", text{g_cursor_theme}, "the pointer's theme; empty for the system's",
     on_load::keeps},
    {compositor, "cursor_size", "", unlimited(g_cursor_size, 0),
     "the pointer's size; 24 for 0 and less, 1024 at most", on_load::keeps},

    {input, "keyboard_layout", "", text{g_kb_layout}, "XKB layout; empty for the system's"},
    {input, "keyboard_variant", "", text{g_kb_variant}, "XKB variant"},
    {input, "keyboard_options", "", text{g_kb_options}, "XKB options"},
    {input, "keyboard_repeat_rate", "", whole{&g_kb_repeat_rate, 25, 0, 100},
     "how often a held key repeats in a second", on_load::keeps},
    {input, "keyboard_repeat_delay", "", whole{&g_kb_repeat_delay, 600, 0, 2000},
     "milliseconds before the first repetition", on_load::keeps},
    {input, "natural_scroll", "", flag{&g_nat_scroll, false}, "mouse wheels move the content, not the view"},
    {input, "touchpad_natural_scroll", "", flag{&g_tp_nat_scroll, true},
     "touchpads move the content, not the view"},
    {input, "tap_to_click", "", flag{&g_tap_to_click, true}, "touchpads click when they are tapped"},
    {input, "left_handed", "", flag{&g_left_handed, false}, "left and right buttons change places"},
    {input, "accel_profile", "",
     word_setting<bool>{&g_accel_flat, false, is_flat, {"`adaptive` or `flat`", "`adaptive`"}},
     "`flat` moves the pointer as far as the device, at any speed"},
    {input, "pointer_accel", "", number_setting<float>{&g_pointer_accel, 0, -1, 1}, "speed of mice"},
    {input, "touchpad_accel", "", number_setting<float>{&g_tp_accel, 0, -1, 1}, "speed of touchpads"},
    {input, "gestures", "", flag{&g_gestures, true}, "swipes of three fingers"},
    {input, "cursor_shake_magnify", "", flag{&g_cursor_shake_magnify, false},
     "shaking the mouse enlarges the pointer for a moment"},
    {input, "tablet_output", "", text{g_tablet_output},
     "the output of drawing tablets: a name; `auto` or empty for the primary; `desktop` for all"},
    {input, "tablet_left_handed", "", flag{&g_tablet_left_handed, false},
     "drawing tablets are turned by 180 degrees"},
    {input, "tablet_keep_aspect", "", flag{&g_tablet_keep_aspect, false},
     "a part of the tablet stays unused, so that circles stay round"},
    {input, "touch_output", "", text{g_touch_output},
     "the output of touchscreens: a name; `auto` or empty for the device's own; `desktop` for all"},

    {appearance, "wallpaper", "", text{g_wallpaper},
     "a picture or a folder of pictures; empty for the standard picture, `none` for none"},
    {appearance, "wallpaper_mode", "",
     output_setting{[](wp_override &o, const char *value) { o.mode = wp_mode_str(value); },
                    {mode_text.values, same_as_all}},
     "the same for the output NAME"},
    {appearance, "wallpaper_mode", "", word_setting<wp_mode>{&g_wp_mode, WP_FILL, wp_mode_str, mode_text},
     "how pictures fit the screen"},
    {appearance, "wallpaper_interval", "",
     output_setting{[](wp_override &o, const char *value) { take_interval(o.interval, value); },
                    {interval_text.values, same_as_all}},
     "the same for the output NAME"},
    {appearance, "wallpaper_interval", "",
     own_setting{[](const char *value) { take_interval(g_wp_interval, value); },
                 [] { g_wp_interval = default_interval_s; }, interval_text},
     "how long each picture of a folder is shown; other values are ignored"},
    {appearance, "wallpaper", "",
     output_setting{[](wp_override &o, const char *value) { copy_text(o.path, value); },
                    {"text, 1023 bytes", same_as_all}},
     "the same for the output NAME"},
    {appearance, "dark", "", own_setting{take_dark, reset_theme, {"`true` or `false`", "`true`"}},
     "dark or light colours; ignored after a line with `theme`"},
    {appearance, "theme", "",
     own_setting{take_theme, reset_theme, {"`light`, `dark` or `high_contrast`", "none"}},
     "`dark` and `high_contrast` are darker than `dark = true`; any other text means `dark = true`"},
    {appearance, "reduce_transparency", "", flag{&g_reduce_transparency, false}, "surfaces are opaque"},
    {appearance, "accent", "", own_setting{take_accent, reset_accent, {"six hexadecimal digits", "`4cbf73`"}},
     "the accent colour; a `#` may stand before it"},

    {dock, "enabled", "", flag{&g_dock_enabled, true}, "a dock on each output"},

    {panel, "screens", "", own_setting{take_screens, reset_screens, {"`all`, `primary` or a name", "`all`"}},
     "the outputs with a panel; a name or token id for one"},
};

std::span<const setting> settings()
{
    return table;
}

static bool names(const setting &row, std::string_view key)
{
    if (std::holds_alternative<output_setting>(row.kind))
        return key.size() > row.key.size() && key.starts_with(row.key) && key[row.key.size()] == '.';
    return key == row.key || (!row.alias.empty() && key == row.alias);
}

const setting *setting_find(setting_file file, std::string_view key)
{
    const auto *row =
        std::ranges::find_if(table, [&](const setting &s) { return s.file == file && names(s, key); });
    return row != std::end(table) ? row : nullptr;
}
