// Text fields of fixed size in records. They are always terminated, and a text that does not fit is cut.
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

inline bool text_equals(std::span<const char> field, std::string_view text)
{
    return text_of(field) == text;
}
