// Reads UTF-8 in text from other programs, which may contain any bytes.
#pragma once

#include <string>
#include <string_view>

inline constexpr std::string_view utf8_replacement = "\xef\xbf\xbd"; // U+FFFD

struct utf8_character {
    char32_t code = 0;
    size_t bytes = 1; // the character's length; 1 if it is not valid
    bool valid = false;
};

// Reads the first character. The text must not be empty.
utf8_character utf8_first(std::string_view text);

// Replaces every byte that is not part of valid UTF-8 by U+FFFD. A title may be cut in the middle of a
// character.
std::string valid_utf8(std::string_view text);
