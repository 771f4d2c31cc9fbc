// The chords that are bound before the user's file changes anything.

#include "../server.hpp"
#include "keybinds.hpp"

static constexpr uint32_t SHIFT = WLR_MODIFIER_SHIFT;
static constexpr uint32_t CTRL = WLR_MODIFIER_CTRL;
static constexpr uint32_t ALT = WLR_MODIFIER_ALT;
// Stands for the modifier that the user has chosen.
static constexpr uint32_t MOD = 1U << 31;

struct direction_keys {
    xkb_keysym_t arrow, letter;
    vnt_direction direction;
};

static constexpr direction_keys directions[]{
    {XKB_KEY_Left, XKB_KEY_h, DIR_LEFT},
    {XKB_KEY_Right, XKB_KEY_l, DIR_RIGHT},
    {XKB_KEY_Up, XKB_KEY_k, DIR_UP},
    {XKB_KEY_Down, XKB_KEY_j, DIR_DOWN},
};

struct directed_action {
    uint32_t mods;
    vnt_action act;
};

static constexpr directed_action directed_actions[]{{0, ACT_FOCUS}, {SHIFT, ACT_MOVE}, {CTRL, ACT_RESIZE}};

struct default_bind {
    uint32_t mods;
    xkb_keysym_t keysym;
    vnt_action act;
    int arg = 0;
    const char *spawn = nullptr;
};

static constexpr default_bind single_binds[]{
    {MOD, XKB_KEY_Return, ACT_SPAWN, 0, "$terminal"},
    {MOD, XKB_KEY_b, ACT_SPAWN, 0, "$browser"},
    {MOD, XKB_KEY_e, ACT_SPAWN, 0, "$files"},
    {MOD, XKB_KEY_q, ACT_CLOSE},
    {MOD, XKB_KEY_space, ACT_FLOAT},
    {MOD, XKB_KEY_t, ACT_LAYOUT},
    {MOD | SHIFT, XKB_KEY_t, ACT_TILE_MODE},
    {MOD, XKB_KEY_f, ACT_FULLSCREEN},
    {MOD, XKB_KEY_m, ACT_MAXIMIZE},
    {MOD, XKB_KEY_Tab, ACT_CYCLE},
    {MOD | SHIFT, XKB_KEY_Tab, ACT_CYCLE},
    {ALT, XKB_KEY_Tab, ACT_CYCLE},
    {ALT | SHIFT, XKB_KEY_Tab, ACT_CYCLE},
    {MOD, XKB_KEY_g, ACT_STACK_GROUP},
    {MOD | SHIFT, XKB_KEY_g, ACT_STACK_UNGROUP},
    {MOD, XKB_KEY_grave, ACT_STACK_CYCLE},
    {MOD | SHIFT, XKB_KEY_r, ACT_RELOAD},
    {MOD | SHIFT, XKB_KEY_Escape, ACT_QUIT},
    {MOD, XKB_KEY_Escape, ACT_SPAWN, 0, "loginctl lock-session"},
    {CTRL | SHIFT, XKB_KEY_Escape, ACT_SPAWN, 0, "vantore-tasks"},
    {0, XKB_KEY_Print, ACT_SPAWN, 0, "vantore-shot --overlay"},
    {MOD, XKB_KEY_Print, ACT_SPAWN, 0, "vantore-shot --overlay --record"},
    {SHIFT, XKB_KEY_Print, ACT_SPAWN, 0, "vantore-shot region --copy"},
    {MOD, XKB_KEY_F7, ACT_SPAWN, 0, "vantore-replay toggle"},
    {MOD, XKB_KEY_F8, ACT_SPAWN, 0, "vantore-replay osd-status"},
    {MOD, XKB_KEY_F9, ACT_SPAWN, 0, "vantore-replay screenshot"},
    {MOD, XKB_KEY_F10, ACT_SPAWN, 0, "vantore-clips --overlay"},
    {MOD, XKB_KEY_F11, ACT_SPAWN, 0, "vantore-replay save"},
    {MOD, XKB_KEY_F12, ACT_SPAWN, 0, "vantore-replay mark"},
    {MOD, XKB_KEY_a, ACT_OVERVIEW},
    {MOD, XKB_KEY_v, ACT_CLIPBOARD},
    {MOD, XKB_KEY_comma, ACT_SPAWN, 0, "vantore-settings"},
    {MOD | SHIFT, XKB_KEY_comma, ACT_MOVE_WS_OUTPUT, -1},
    {MOD | SHIFT, XKB_KEY_period, ACT_MOVE_WS_OUTPUT, 1},
    {MOD | CTRL, XKB_KEY_comma, ACT_MOVE_WINDOW_OUTPUT, -1},
    {MOD | CTRL, XKB_KEY_period, ACT_MOVE_WINDOW_OUTPUT, 1},
    {0, XKB_KEY_XF86MonBrightnessUp, ACT_SPAWN, 0, "brightnessctl set +10%"},
    {0, XKB_KEY_XF86MonBrightnessDown, ACT_SPAWN, 0, "brightnessctl set 10%-"},
    {0, XKB_KEY_XF86AudioRaiseVolume, ACT_SPAWN, 0, "wpctl set-volume -l 1.0 @DEFAULT_AUDIO_SINK@ 5%+"},
    {0, XKB_KEY_XF86AudioLowerVolume, ACT_SPAWN, 0, "wpctl set-volume @DEFAULT_AUDIO_SINK@ 5%-"},
    {0, XKB_KEY_XF86AudioMute, ACT_SPAWN, 0, "wpctl set-mute @DEFAULT_AUDIO_SINK@ toggle"},
    {0, XKB_KEY_XF86AudioPlay, ACT_SPAWN, 0, "playerctl play-pause"},
    {0, XKB_KEY_XF86AudioNext, ACT_SPAWN, 0, "playerctl next"},
    {0, XKB_KEY_XF86AudioPrev, ACT_SPAWN, 0, "playerctl previous"},
};

static void add_workspaces(uint32_t mod)
{
    for (int num = 1; num <= 9; num++) {
        const auto digit = xkb_keysym_t(XKB_KEY_0 + num);
        add_bind(mod, digit, ACT_WORKSPACE, num, nullptr);
        add_bind(mod | SHIFT, digit, ACT_MOVE_TO_WS, num, nullptr);
    }
}

static void add_directions(uint32_t mod)
{
    for (const direction_keys &keys : directions) {
        for (const directed_action &action : directed_actions) {
            add_bind(mod | action.mods, keys.arrow, action.act, keys.direction, nullptr);
            add_bind(mod | action.mods, keys.letter, action.act, keys.direction, nullptr);
        }
    }
}

void install_default_binds(const vantore_server &server)
{
    g_bind_count = 0;
    add_workspaces(server.wm_modifier);
    add_directions(server.wm_modifier);
    for (const default_bind &b : single_binds) {
        const uint32_t mods = (b.mods & MOD) != 0 ? (b.mods & ~MOD) | server.wm_modifier : b.mods;
        add_bind(mods, b.keysym, b.act, b.arg, b.spawn);
    }
}
