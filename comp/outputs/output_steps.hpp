// The steps of a command that changes an output, read from its words.
#pragma once

#include "../wlr.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

struct output_enable {
};
struct output_disable {
};
struct output_transform {
    wl_output_transform to;
};
struct output_scale {
    double factor;
};
struct output_position {
    int x, y; // layout coordinates
};
struct output_mode_wish {
    int width, height; // pixels
    int refresh_hz; // 0 for any
};
// To mirror something, in the user's words.
struct output_mirror {
    std::string kind; // "window", "output", "screen", "off", or a word that makes no sense
    std::string source; // the window's id or the output's token; may be empty
    uint32_t window = 0; // the id; 0 if the text is none
};
struct output_unhandled {
    std::string word;
};

using output_step = std::variant<output_enable, output_disable, output_transform, output_scale,
                                 output_position, output_mode_wish, output_mirror, output_unhandled>;

// Returns a word that is a number of layout units. Numbers beyond a million are limited to that. Nothing for
// any other word.
std::optional<int> whole_number(std::string_view word);

// Reads steps such as "enable mode 1920x1080@60Hz position 0 0 transform 90 scale 1.5". A step whose argument
// makes no sense is left out, and one whose argument is missing ends the command.
std::vector<output_step> output_steps_in(std::string_view words);
