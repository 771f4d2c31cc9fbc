#include "default_texts.hpp"

#include "files.hpp"

#include <array>
#include <unistd.h>

static constexpr char compositor_text[] = R"(# Vantore compositor settings
modifier = super          # super | alt | ctrl
gaps = 8                  # px between tiled windows + screen edge
master_ratio = 0.55       # fraction of width for the master column
default_layout = floating # floating | tiling
overview = true           # window overview / Exposé ($mod+A, 3-finger swipe up, applet)
allow_tearing = true      # let fullscreen games tear for lower latency (vsync otherwise)
# x_primary = DP-1        # monitor X11 apps/games treat as the PRIMARY display (where they open)
# primary = DP-1          # primary monitor for desktop icons + a primary-only panel (blank = first screen)
# debug_input = 1         # log pointer-button routing + constraint changes (diagnosing game/overlay input)
game_tearing = false      # ALSO tear games tagged via content-type (no explicit hint needed)
presentation_time = true  # precise frame timing for video/games — needs re-login to change (docs/22)
desktop_icons = true      # show ~/Desktop as icons on the desktop
vrr = false               # variable refresh rate (FreeSync/G-Sync) on supported displays
max_render_time = auto    # frame pacing: auto = measure render time & adapt (recommended) | off | <ms> fixed
gestures = true           # touchpad 3-finger swipe switches workspace
focus_follows_mouse = false # hovering a window focuses it (no auto-raise); false = click to focus
# game_output =           # send fullscreen X11/Proton games to this monitor (blank = the window's own)
shadows = true            # drop shadows under floating windows (fullscreen is always exempt)
corner_radius = 10        # rounded window corners, px (0 = square; fullscreen always square)
blur = false              # frosted-glass blur behind the shell (panel/launcher) — costs GPU
glow = false              # focused floating window gets an accent-tinted shadow (glow)
tiler = true              # Mouse Tiler: dragging a window shows the tiling HUD (false = legacy edge snap)
tiler_pos = top           # top | bottom — the drag HUD docks below the panel (top of the usable area)
animations = true         # subtle window fade-in + workspace slide (false = reduced motion)
dim_inactive = 0          # dim unfocused windows (0 = off … 0.6 = strong)
)";

static constexpr char input_text[] =
    R"(# Vantore input settings (keyboard layout + mouse/touchpad). Applied live on reload.
# keyboard_layout = gb        # XKB layout code (us, gb, de, fr, …); blank = system default
# keyboard_variant =          # e.g. colemak, dvorak
# keyboard_options =          # e.g. caps:escape
# accel_profile = adaptive    # adaptive | flat (flat = 1:1 raw input — gaming)
# pointer_accel = 0           # mouse speed, -1.0 … 1.0
# natural_scroll = false      # mouse wheel direction
# tap_to_click = true         # touchpad
# touchpad_natural_scroll = true
# touchpad_accel = 0          # touchpad speed, -1.0 … 1.0
# left_handed = false         # swap mouse buttons
# gestures = true             # 3-finger swipe switches workspace
# cursor_shake_magnify = false # shake the mouse to briefly enlarge the pointer (find it)
# tablet_output =             # which screen a drawing tablet maps to: blank/auto = primary,
#                             #   an output name (e.g. DP-1) = that screen, desktop = whole layout
# tablet_left_handed = false  # rotate the tablet 180° (buttons on the right) for a left-hander
# tablet_keep_aspect = false  # keep the pen's proportions (letterbox) so circles aren't stretched
# touch_output =              # which screen a touchscreen maps to: blank/auto = the panel's own
#                             # display (libinput hint), else primary; a screen name; or desktop = whole layout
)";

static constexpr char workspaces_text[] = R"(# <num> = <name>[, output=<NAME>][, layout=tiling|floating]
# e.g.:
# 1 = WWW, layout=tiling
# 2 = Code, layout=tiling
# 3 = Chat
)";

static constexpr char rules_text[] =
    R"(# <app_id> -> workspace=<num|name>, float | tile | fullscreen | noshadow | noround
# Media players want their own aspect ratio, so float them by default:
mpv -> float
vlc -> float
pavucontrol -> float
vantore-notes -> float, skiptaskbar, place=top-right   # sticky notes: floating, out of the taskbar/dock
vantore-welcome -> float, place=center                  # first-run wizard floats centered
vantore-install -> float, place=center                  # the installer floats centered
# more examples:
# brave -> workspace=WWW, tile
# steam_app_* -> fullscreen   # borderless games that don't request fullscreen
)";

static constexpr char keybinds_text[] =
    R"(# Vantore keybinds — YOUR overrides only.  <mods>+<key> = <action> [arg]
# The built-in defaults are always active; see Settings > Keybindings for the full list.
# Add a line only to add a shortcut, override one, or disable one with:  <chord> = none
#
# mods: $mod (your 'modifier' setting) / super / shift / ctrl / alt
# keys: a-z, 0-9, left/right/up/down, return, space, tab, escape, comma, period, grave, F1-F12
# actions: spawn <cmd> | workspace N | move-to-workspace N | focus|move|resize left|right|up|down
#          move-workspace-output left|right | move-to-output left|right | close | toggle-float
#          toggle-layout | cycle-tile-mode | fullscreen | maximize | cycle | overview | clipboard | reload | quit
# spawn $terminal | $browser | $files | $email = launch your Default Applications.
#
# Examples (remove the leading # to enable):
#   $mod+shift+b = spawn brave
#   $mod+n = spawn vantore-notes
#   $mod+f = none            # disable the Fullscreen default
)";

static constexpr char autostart_text[] =
    R"(# Vantore autostart — one command per line, run at session start (/bin/sh).
# Missing programs are skipped silently, so it's safe to list optional ones.

nm-applet --indicator        # NetworkManager tray applet (Wi-Fi + WireGuard/VPN)
blueman-applet               # Bluetooth tray applet (pair headphones, mice, …)
vantore-idle                 # idle → auto-lock / suspend (reads power.conf)
vantore-nightlight           # night light (reads power.conf)
vantore-clipd                # clipboard history recorder
/usr/libexec/polkit-mate-authentication-agent-1  # GUI polkit auth agent (password prompts)
)";

static constexpr char appearance_text[] =
    R"(# Vantore appearance — Settings ▸ Appearance edits this (panel recolours live).
dark = true
# accent = 3399ff                            # hex (no '#')
# wallpaper = /usr/share/vantore/Vantore.png # a FILE, or a FOLDER to slideshow
# wallpaper_mode = fill                      # fill | fit | stretch | center
# wallpaper.DP-1 = /path/other.jpg           # per-output override (use the output's name)
# wallpaper_interval = 600                   # seconds between slideshow picks (per monitor)
)";

static constexpr default_text texts[]{
    {"compositor.conf", compositor_text}, {"input.conf", input_text},
    {"workspaces.conf", workspaces_text}, {"rules.conf", rules_text},
    {"keybinds.conf", keybinds_text},     {"autostart.conf", autostart_text},
    {"appearance.conf", appearance_text},
};

std::span<const default_text> default_texts()
{
    return texts;
}

void config_write_defaults(const char *dir)
{
    for (const default_text &text : texts) {
        std::array<char, 600> path{};
        snprintf(path.data(), path.size(), "%s/%s", dir, text.file);
        if (access(path.data(), F_OK) == 0)
            continue;
        if (const config_file file{fopen(path.data(), "we")})
            fputs(text.text, file.get());
    }
}
