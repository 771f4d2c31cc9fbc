// Reads keybinds.conf. The default chords are in default_binds.cpp.

#include "keybinds.hpp"

#include "../server.hpp"
#include "../text.hpp"
#include "files.hpp"

#include <algorithm>
#include <cstring>
#include <strings.h>

static bool same_word(const char *a, const char *b)
{
    return strcasecmp(a, b) == 0;
}

void add_bind(uint32_t mods, xkb_keysym_t key, vnt_action act, int arg, const char *spawn)
{
    if (g_bind_count >= int(g_binds.size()))
        return;
    vnt_bind &bind = g_binds[size_t(g_bind_count++)];
    bind = {.mods = mods, .keysym = key, .act = act, .arg = arg, .spawn = {}};
    if (spawn != nullptr)
        copy_text(bind.spawn, spawn);
}

void remove_bind(uint32_t mods, xkb_keysym_t key)
{
    const std::span<vnt_bind> used{g_binds.data(), size_t(g_bind_count)};
    const auto found = std::ranges::find_if(
        used, [&](const vnt_bind &bind) { return bind.mods == mods && bind.keysym == key; });
    if (found == used.end())
        return;
    *found = used.back();
    g_bind_count--;
}

struct modifier_name {
    const char *name;
    uint32_t mods;
};

static constexpr modifier_name modifier_names[]{
    {"super", WLR_MODIFIER_LOGO},  {"logo", WLR_MODIFIER_LOGO}, {"mod4", WLR_MODIFIER_LOGO},
    {"shift", WLR_MODIFIER_SHIFT}, {"ctrl", WLR_MODIFIER_CTRL}, {"control", WLR_MODIFIER_CTRL},
    {"alt", WLR_MODIFIER_ALT},     {"mod1", WLR_MODIFIER_ALT},
};

// Returns 0 for a token that is not a modifier.
static uint32_t modifier_of(const vantore_server &server, const char *token)
{
    for (const modifier_name &m : modifier_names)
        if (same_word(token, m.name))
            return m.mods;
    const bool configured = strcmp(token, "$mod") == 0 || same_word(token, "mod");
    return configured ? server.wm_modifier : 0;
}

struct key_name {
    const char *name;
    xkb_keysym_t keysym;
};

// These names may be written in any case, unlike those of XKB.
static constexpr key_name key_names[]{
    {"left", XKB_KEY_Left},     {"right", XKB_KEY_Right},  {"up", XKB_KEY_Up},       {"down", XKB_KEY_Down},
    {"return", XKB_KEY_Return}, {"enter", XKB_KEY_Return}, {"space", XKB_KEY_space}, {"tab", XKB_KEY_Tab},
    {"escape", XKB_KEY_Escape}, {"esc", XKB_KEY_Escape},
};

// Returns the keysym of an ASCII letter or digit, which is the character's own value; capitals give the small
// letter's. Returns 0 for any other character.
static xkb_keysym_t key_of_character(char c)
{
    if (c >= 'A' && c <= 'Z')
        return xkb_keysym_t(c - 'A' + XKB_KEY_a);
    const bool is_key = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
    return is_key ? xkb_keysym_t(c) : XKB_KEY_NoSymbol;
}

xkb_keysym_t cfg_key(const char *k)
{
    if (strlen(k) == 1)
        if (const xkb_keysym_t keysym = key_of_character(*k); keysym != XKB_KEY_NoSymbol)
            return keysym;
    for (const key_name &known : key_names)
        if (same_word(k, known.name))
            return known.keysym;
    return xkb_keysym_from_name(k, XKB_KEYSYM_NO_FLAGS);
}

int cfg_dir(const char *v)
{
    if (same_word(v, "right"))
        return DIR_RIGHT;
    if (same_word(v, "up"))
        return DIR_UP;
    return same_word(v, "down") ? DIR_DOWN : DIR_LEFT;
}

bool cfg_mods_key(const vantore_server &server, char *spec, uint32_t &mods, xkb_keysym_t &key)
{
    mods = 0;
    const char *name = nullptr;
    char *rest = nullptr;
    for (char *piece = strtok_r(spec, "+", &rest); piece != nullptr; piece = strtok_r(nullptr, "+", &rest)) {
        const char *token = cfg_trim(piece);
        const uint32_t modifier = modifier_of(server, token);
        mods |= modifier;
        if (modifier == 0)
            name = token;
    }
    key = name != nullptr ? cfg_key(name) : XKB_KEY_NoSymbol;
    return key != XKB_KEY_NoSymbol;
}

using enum verb_argument;

static constexpr keybind_verb verbs[]{
    {{"workspace"}, ACT_WORKSPACE, number, "shows the workspace"},
    {{"move-to-workspace"}, ACT_MOVE_TO_WS, number, "moves the window to the workspace"},
    {{"focus"}, ACT_FOCUS, direction, "focuses the next window in the direction"},
    {{"move"}, ACT_MOVE, direction, "moves the window"},
    {{"resize"}, ACT_RESIZE, direction, "resizes the window"},
    {{"move-workspace-output"}, ACT_MOVE_WS_OUTPUT, output_step, "moves the workspace to another output"},
    {{"move-to-output", "move-window-output"},
     ACT_MOVE_WINDOW_OUTPUT,
     output_step,
     "moves the window to another output"},
    {{"spawn", "exec"}, ACT_SPAWN, command, "starts a program"},
    {{"close"}, ACT_CLOSE, none, "asks the window to close"},
    {{"toggle-float", "float"}, ACT_FLOAT, none, "takes the window out of tiling, or puts it back"},
    {{"toggle-layout", "layout"}, ACT_LAYOUT, none, "switches the workspace between floating and tiling"},
    {{"cycle-tile-mode", "tile-mode"}, ACT_TILE_MODE, none, "switches to the next tile mode"},
    {{"fullscreen"}, ACT_FULLSCREEN, none, "makes the window fullscreen, or restores it"},
    {{"maximize"}, ACT_MAXIMIZE, none, "maximizes the window, or restores it"},
    {{"cycle"}, ACT_CYCLE, none, "steps through the windows while the modifier is held"},
    {{"quit", "exit"}, ACT_QUIT, none, "ends the session"},
    {{"reload"}, ACT_RELOAD, none, "reads the configuration again"},
    {{"overview"}, ACT_OVERVIEW, none, "opens or closes the overview"},
    {{"clipboard"}, ACT_CLIPBOARD, none, "opens the clipboard history"},
    {{"stack-group", "group"}, ACT_STACK_GROUP, none, "starts a stack with the window, or takes it out"},
    {{"stack-ungroup", "ungroup", "unstack"}, ACT_STACK_UNGROUP, none, "takes the window out of its stack"},
    {{"stack-cycle", "stack-next"}, ACT_STACK_CYCLE, none, "shows the next window of the stack"},
};

std::span<const keybind_verb> keybind_verbs()
{
    return verbs;
}

static bool has_name(const keybind_verb &verb, std::string_view name)
{
    return std::ranges::any_of(verb.names, [&](const char *n) { return n != nullptr && name == n; });
}

static int output_step_from(std::string_view text)
{
    return text == "left" || text == "prev" ? -1 : 1;
}

static void read_argument(vnt_bind &bind, verb_argument kind, const char *rest)
{
    switch (kind) {
    case none:
        return;
    case number:
        bind.arg = cfg_int(rest);
        return;
    case direction:
        bind.arg = cfg_dir(rest);
        return;
    case output_step:
        bind.arg = output_step_from(rest);
        return;
    case command:
        copy_text(bind.spawn, rest);
        return;
    }
}

void cfg_action(vnt_bind &bind, const char *verb, const char *rest)
{
    for (const keybind_verb &known : verbs) {
        if (!has_name(known, verb))
            continue;
        bind.act = known.act;
        read_argument(bind, known.argument, rest);
        return;
    }
}

// Cuts the text after its first word and returns what follows.
static char *cut_verb(char *text)
{
    char *blank = strchr(text, ' ');
    if (blank == nullptr)
        return text + strlen(text);
    *blank = '\0';
    return cfg_trim(blank + 1);
}

static bool removes(std::string_view verb)
{
    return verb == "none" || verb == "unbind";
}

// Returns false for a line that can't be used.
static bool apply_line(const vantore_server &server, const cfg_pair &line)
{
    vnt_bind bind;
    if (!cfg_mods_key(server, line.key, bind.mods, bind.keysym))
        return false;
    const char *rest = cut_verb(line.value);
    cfg_action(bind, line.value, rest);
    if (bind.act == ACT_NONE && !removes(line.value))
        return false;
    remove_bind(bind.mods, bind.keysym);
    if (bind.act != ACT_NONE)
        add_bind(bind.mods, bind.keysym, bind.act, bind.arg, bind.spawn.data());
    return true;
}

void config_parse_keybinds(const vantore_server &server, const char *path)
{
    const config_file file = config_open(path);
    std::array<char, 512> line{};
    while (const auto pair = file != nullptr ? config_next_pair(*file, line) : std::nullopt) {
        if (g_bind_count >= int(g_binds.size()))
            return;
        if (!apply_line(server, *pair))
            g_config_errors++;
    }
}

void config_load_keybinds(const vantore_server &server)
{
    std::array<char, 600> path{};
    config_path(path, "keybinds.conf");
    install_default_binds(server);
    config_parse_keybinds(server, path.data());
}
