// The user's settings. Everybody may read them, and only the configuration writes them. The table in
// settings_table.cpp gives their keys, defaults and limits.
#pragma once

#include "../layout.hpp"

#include <array>

enum wp_mode { WP_FILL, WP_FIT, WP_STRETCH, WP_CENTER };

enum panel_screens_mode : unsigned char { PANEL_SCREENS_ALL, PANEL_SCREENS_PRIMARY, PANEL_SCREENS_NAMED };

// What workspaces.conf says about one workspace.
struct ws_cfg {
    bool set = false; // it has a line
    std::array<char, 64> name{}; // empty: the workspace keeps its name
    std::array<char, 64> output{}; // the output it belongs on; empty for none
    vantore_layout layout = VANTORE_LAYOUT_FLOATING;
    bool layout_set = false; // else g_default_layout counts
    vantore_tile_mode tile_mode = TM_MASTER;
};

// How the wallpaper of one output differs from the others.
struct wp_override {
    std::array<char, 64> name{}; // the output's
    std::array<char, 1024> path{}; // empty: g_wallpaper
    int mode = -1; // a wp_mode; -1: g_wp_mode
    int interval = -1; // seconds; -1: g_wp_interval
};

// Windows and effects
inline int g_gap; // pixels between tiles and to the screen's edge
inline double g_default_master; // the master tile's share of the width
inline vantore_layout g_default_layout;
inline bool g_overview_enabled;
inline bool g_focus_follows_mouse;
inline int g_resize_border; // pixels at the edges of floating windows that resize them
inline bool g_protect_focus; // X11 menus and panels do not take the keyboard unasked
inline bool g_shadows, g_blur, g_glow;
inline int g_corner_radius; // pixels
inline float g_dim_inactive; // how dark windows without focus are, 0 for not at all
inline bool g_animations;
inline bool g_force_effects; // keep effects on under software rendering
inline bool g_tiler; // the Mouse Tiler while a window is dragged
inline bool g_tiler_top; // its display docks at the top

// Outputs and games
inline bool g_allow_tearing, g_game_tearing;
inline bool g_presentation_time; // offer the presentation-time protocol; read once at the start
inline bool g_vrr; // adaptive sync on outputs that appear
inline int g_max_render_time; // ms before the next blank; 0 paints at once, -1 measures
inline std::array<char, 64> g_x_primary; // the output that X11 clients see as primary
inline std::array<char, 64> g_primary_pref; // the primary output, a name or token id; empty for the first
inline std::array<char, 64> g_game_output; // where fullscreen X11 games go; empty keeps their output

// The keyboard. The texts are in XKB's form, and an empty one means the system's default.
inline std::array<char, 64> g_kb_layout, g_kb_variant;
inline std::array<char, 128> g_kb_options;
inline int g_kb_repeat_rate = 25; // a second
inline int g_kb_repeat_delay = 600; // ms

// Pointing devices. Accelerations go from -1 to 1. Outputs are a name, "desktop", "auto" or empty.
inline bool g_tap_to_click, g_tp_nat_scroll, g_nat_scroll, g_accel_flat, g_left_handed, g_tablet_left_handed;
inline float g_tp_accel, g_pointer_accel;
inline bool g_gestures;
inline bool g_debug_input; // log where pointer buttons go
inline bool g_tablet_keep_aspect;
inline std::array<char, 64> g_tablet_output, g_touch_output;
inline std::array<char, 128> g_cursor_theme; // empty for the system's
inline int g_cursor_size; // 0 or less for the usual size
inline bool g_cursor_shake_magnify;

// Colours and wallpaper
inline int g_theme_kind; // 0 light, 1 dark, 2 darker with a stronger shadow
inline bool g_saw_theme_key; // the file has a "theme" line, so "dark" no longer counts
inline bool g_reduce_transparency;
inline bool g_accent_set;
inline std::array<float, 4> g_accent; // red, green, blue, alpha
inline std::array<char, 1024> g_wallpaper; // a picture or a folder of pictures; empty for none
inline wp_mode g_wp_mode;
inline int g_wp_interval; // seconds between the pictures of a folder
inline std::array<wp_override, 16> g_wp_overrides;
inline int g_wp_override_count;

// The shell around the windows
inline bool g_desktop_icons;
inline bool g_dock_enabled;
inline panel_screens_mode g_panel_screens;
inline std::array<char, 64> g_panel_screen_name; // with PANEL_SCREENS_NAMED: a name or token id

inline std::array<ws_cfg, 10> g_ws_cfg; // by workspace number; 0 stays unused
