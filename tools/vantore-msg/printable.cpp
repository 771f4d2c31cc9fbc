#include "printable.hpp"

#include <algorithm>
#include <cstdint>
#include <cwchar>

static constexpr std::string_view replacement = "\xef\xbf\xbd"; // U+FFFD

struct character {
    char32_t code = 0;
    size_t bytes = 1;
    bool valid = false;
};

struct encoding {
    uint8_t mask, lead;
    char32_t smallest; // that needs this many bytes
};

// RFC 3629: no overlong forms, no surrogates, nothing beyond U+10FFFF.
static character first_character(std::string_view text)
{
    static constexpr encoding forms[]{
        {0x80, 0x00, 0}, {0xe0, 0xc0, 0x80}, {0xf0, 0xe0, 0x800}, {0xf8, 0xf0, 0x10000}};
    const auto lead = uint8_t(text.front());
    const auto *form =
        std::ranges::find_if(forms, [&](const encoding &e) { return (lead & e.mask) == e.lead; });
    const auto bytes = size_t(form - std::begin(forms)) + 1;
    if (form == std::end(forms) || text.size() < bytes)
        return {};
    auto code = char32_t(lead & uint8_t(~form->mask));
    for (const char byte : text.substr(1, bytes - 1)) {
        if ((uint8_t(byte) & 0xc0) != 0x80)
            return {};
        code = code << 6 | (uint8_t(byte) & 0x3f);
    }
    const bool surrogate = code >= 0xd800 && code <= 0xdfff;
    if (code < form->smallest || surrogate || code > 0x10ffff)
        return {};
    return {.code = code, .bytes = bytes, .valid = true};
}

template <class Keep> static std::string filtered(std::string_view text, Keep keep)
{
    std::string result;
    while (!text.empty()) {
        const character c = first_character(text);
        result += c.valid && keep(c.code) ? text.substr(0, c.bytes) : replacement;
        text.remove_prefix(c.bytes);
    }
    return result;
}

std::string valid_utf8(std::string_view text)
{
    return filtered(text, [](char32_t) { return true; });
}

static bool is_control(char32_t code)
{
    return code < 0x20 || (code >= 0x7f && code < 0xa0);
}

static bool breaks_line(char32_t code)
{
    return code == 0x2028 || code == 0x2029;
}

static bool turns_direction(char32_t code)
{
    return code == 0x61c || code == 0x200e || code == 0x200f || (code >= 0x202a && code <= 0x202e) ||
           (code >= 0x2066 && code <= 0x2069);
}

std::string printable(std::string_view text)
{
    return filtered(text, [](char32_t code) {
        return !is_control(code) && !breaks_line(code) && !turns_direction(code);
    });
}

int display_width(std::string_view text)
{
    int width = 0;
    while (!text.empty()) {
        const character c = first_character(text);
        width += std::max(wcwidth(wchar_t(c.code)), 0);
        text.remove_prefix(c.bytes);
    }
    return width;
}

std::string aligned(const std::vector<std::vector<std::string>> &rows)
{
    std::vector<int> widths;
    for (const auto &row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (size_t column = 0; column < row.size(); column++)
            widths[column] = std::max(widths[column], display_width(row[column]));
    }
    std::string text;
    for (const auto &row : rows) {
        for (size_t column = 0; column < row.size(); column++)
            text += row[column] + std::string(size_t(widths[column] - display_width(row[column]) + 2), ' ');
        text.erase(text.find_last_not_of(' ') + 1);
        text += '\n';
    }
    return text;
}

static size_t bytes_that_fit(std::string_view line, int columns)
{
    size_t bytes = 0;
    while (bytes < line.size()) {
        const character c = first_character(line.substr(bytes));
        columns -= std::max(wcwidth(wchar_t(c.code)), 0);
        if (columns < 0)
            break;
        bytes += c.bytes;
    }
    return bytes;
}

static std::string cut(std::string_view line, int columns)
{
    if (columns == 0 || display_width(line) <= columns)
        return std::string{line};
    return std::string{line.substr(0, bytes_that_fit(line, columns - 1))} + "…";
}

std::string cut_lines(std::string_view text, int columns)
{
    std::string result;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        result += cut(line, columns) + '\n';
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return result;
}
