// Text fields of fixed size in records, which are always terminated and cut what does not fit, and the words
// of a text.
#pragma once

#include <algorithm>
#include <span>
#include <string_view>

inline void copy_text(std::span<char> field, std::string_view text)
{
    const size_t n = std::min(text.size(), field.size() - 1);
    std::ranges::copy(text.substr(0, n), field.begin());
    field[n] = '\0';
}

inline std::string_view text_of(std::span<const char> field)
{
    return field.data();
}

// Takes the next word off the text. Blanks, tabs and line ends separate words. Empty after the last one.
inline std::string_view take_word(std::string_view &text)
{
    static constexpr std::string_view blanks = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    const std::string_view word = text.substr(0, text.find_first_of(blanks));
    text.remove_prefix(word.size());
    return word;
}

inline bool text_equals(std::span<const char> field, std::string_view text)
{
    return text_of(field) == text;
}
