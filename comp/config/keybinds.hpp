// The table of key bindings. The user's lines in keybinds.conf change its built-in defaults.
#pragma once

#include "../fwd.hpp"

#include <array>
#include <cstdint>
#include <span>
#include <xkbcommon/xkbcommon.h>

enum vnt_action : uint8_t {
    ACT_NONE,
    ACT_WORKSPACE,
    ACT_MOVE_TO_WS,
    ACT_FOCUS,
    ACT_MOVE,
    ACT_RESIZE,
    ACT_SPAWN,
    ACT_CLOSE,
    ACT_FLOAT,
    ACT_LAYOUT,
    ACT_TILE_MODE,
    ACT_FULLSCREEN,
    ACT_MAXIMIZE,
    ACT_CYCLE,
    ACT_QUIT,
    ACT_RELOAD,
    ACT_OVERVIEW,
    ACT_CLIPBOARD,
    ACT_STACK_GROUP,
    ACT_STACK_UNGROUP,
    ACT_STACK_CYCLE,
    ACT_MOVE_WS_OUTPUT,
    ACT_MOVE_WINDOW_OUTPUT,
};

enum vnt_direction : int { DIR_LEFT, DIR_RIGHT, DIR_UP, DIR_DOWN };

struct vnt_bind {
    uint32_t mods = 0; // WLR_MODIFIER_* bits, which must match exactly
    xkb_keysym_t keysym = 0; // what the key means without Shift; letters in lower case
    vnt_action act = ACT_NONE;
    int arg = 0; // a workspace number, a vnt_direction, or -1 and 1 for the output before and after
    std::array<char, 256> spawn{}; // the command line of ACT_SPAWN, or "$terminal" and the like
};

inline std::array<vnt_bind, 160> g_binds;
inline int g_bind_count;

// Appends a binding. A full table stays as it is. `spawn` may be null and is cut to 255 bytes.
void add_bind(uint32_t mods, xkb_keysym_t key, vnt_action act, int arg, const char *spawn);
// Removes the first entry of exactly this chord, if there is one. The last entry takes its place.
void remove_bind(uint32_t mods, xkb_keysym_t key);

// Returns the keysym of a key's name in keybinds.conf, or 0 if the name is unknown.
xkb_keysym_t cfg_key(const char *k);
// Returns a vnt_direction, which is DIR_LEFT for a text that names none.
int cfg_dir(const char *v);
// Reads "mod+mod+key" and cuts the text into pieces. Returns false if the key is missing or unknown.
bool cfg_mods_key(const vantore_server &server, char *spec, uint32_t &mods, xkb_keysym_t &key);
// Fills in the binding's action. An unknown verb leaves the binding as it is.
void cfg_action(vnt_bind &bind, const char *verb, const char *rest);

// Empties the table and fills in the defaults, with the server's current modifier.
void install_default_binds(const vantore_server &server);
// Applies a user's file on top. Bad lines change nothing and are counted in g_config_errors. A file that
// can't be read changes nothing. Once the table is full, the rest of the file is ignored.
void config_parse_keybinds(const vantore_server &server, const char *path);
// Installs the defaults and applies keybinds.conf of the configuration directory.
void config_load_keybinds(const vantore_server &server);

enum class verb_argument : uint8_t { none, number, direction, output_step, command };

struct keybind_verb {
    std::array<const char *, 3> names; // null after the last
    vnt_action act;
    verb_argument argument;
    const char *does; // for the documentation
};
std::span<const keybind_verb> keybind_verbs();
