// The one table of the keys of compositor.conf, input.conf, appearance.conf, dock.conf and panel.conf.
// Reading, resetting, limiting and docs/settings.md all follow it. A new setting is one row.
#pragma once

#include "../fwd.hpp"
#include "settings.hpp"

#include <cstdint>
#include <span>
#include <string_view>
#include <variant>

enum class setting_file : unsigned char { compositor, input, appearance, dock, panel };

struct flag_setting {
    bool *stored;
    bool initial;
};

// The limits are applied after the whole file has been read.
template <class T> struct number_setting {
    T *stored;
    T initial, least, most;
};

// Initially empty. A text that does not fit is cut.
struct text_setting {
    std::span<char> stored;
};

// What the documentation says about the allowed and the default values.
struct word_text {
    const char *values, *initial;
};

template <class T> struct word_setting {
    T *stored;
    T initial;
    T (*read)(const char *value);
    word_text text;
};

// A setting that the server's record holds.
struct server_setting {
    uint32_t vantore_server::*stored;
    uint32_t initial;
    uint32_t (*read)(const char *value);
    word_text text;
};

// A setting with its own functions to read and reset it.
struct own_setting {
    void (*take)(const char *value);
    void (*reset)();
    word_text text;
};

// A setting of one output, with the key "KEY.NAME".
struct output_setting {
    void (*take)(wp_override &output, const char *value);
    word_text text;
};

using setting_kind =
    std::variant<flag_setting, number_setting<int>, number_setting<float>, number_setting<double>,
                 text_setting, word_setting<bool>, word_setting<int>, word_setting<wp_mode>,
                 word_setting<vantore_layout>, server_setting, own_setting, output_setting>;

enum class on_load : bool { resets, keeps }; // keeps: only a line in the file changes it

struct setting {
    setting_file file;
    std::string_view key;
    std::string_view alias; // empty for none
    setting_kind kind;
    const char *does; // for the documentation
    on_load load = on_load::resets;
};

// Returns the rows in the order in which they are compared with a key.
std::span<const setting> settings();

// Returns the row of a key as a file spells it, or null if there is none.
const setting *setting_find(setting_file file, std::string_view key);
