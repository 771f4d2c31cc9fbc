// The one table of the keys of compositor.conf, input.conf, appearance.conf, dock.conf and panel.conf:
// reading, resetting, limiting and docs/settings.md come from it. A new setting is one row.
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

// Limited once the whole file has been read.
template <class T> struct number_setting {
    T *stored;
    T initial, least, most;
};

// Cut where it does not fit; initially empty.
struct text_setting {
    std::span<char> stored;
};

// What the documentation says of words.
struct word_text {
    const char *values, *initial;
};

template <class T> struct word_setting {
    T *stored;
    T initial;
    T (*read)(const char *value);
    word_text text;
};

// One that the server's record holds.
struct server_setting {
    uint32_t vantore_server::*stored;
    uint32_t initial;
    uint32_t (*read)(const char *value);
    word_text text;
};

// One with a rule of its own.
struct own_setting {
    void (*take)(const char *value);
    void (*reset)();
    word_text text;
};

// "KEY.NAME", for the output of that name.
struct output_setting {
    void (*take)(wp_override &output, const char *value);
    word_text text;
};

using setting_kind =
    std::variant<flag_setting, number_setting<int>, number_setting<float>, number_setting<double>,
                 text_setting, word_setting<bool>, word_setting<int>, word_setting<wp_mode>,
                 word_setting<vantore_layout>, server_setting, own_setting, output_setting>;

enum class on_load : bool { resets, keeps }; // keeps: stays as it was while no file names it

struct setting {
    setting_file file;
    std::string_view key;
    std::string_view alias; // empty for none
    setting_kind kind;
    const char *does; // for the documentation
    on_load load = on_load::resets;
};

// In the order in which keys are compared.
std::span<const setting> settings();

// The row of a key as a file spells it; null for none.
const setting *setting_find(setting_file file, std::string_view key);
