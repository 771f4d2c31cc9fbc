#include "printable.hpp"

#include "utf8.hpp"

#include <algorithm>
#include <cwchar>

template <class Keep> static std::string filtered(std::string_view text, Keep keep)
{
    std::string result;
    while (!text.empty()) {
        const utf8_character c = utf8_first(text);
        result += c.valid && keep(c.code) ? text.substr(0, c.bytes) : utf8_replacement;
        text.remove_prefix(c.bytes);
    }
    return result;
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
        const utf8_character c = utf8_first(text);
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
        const utf8_character c = utf8_first(line.substr(bytes));
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
