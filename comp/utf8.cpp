#include "utf8.hpp"

#include <algorithm>
#include <cstdint>

struct encoding {
    uint8_t mask, lead;
    char32_t smallest; // the smallest code that needs this many bytes
};

// RFC 3629 forbids overlong forms, surrogates and codes beyond U+10FFFF.
utf8_character utf8_first(std::string_view text)
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

std::string valid_utf8(std::string_view text)
{
    std::string result;
    while (!text.empty()) {
        const utf8_character c = utf8_first(text);
        result += c.valid ? text.substr(0, c.bytes) : utf8_replacement;
        text.remove_prefix(c.bytes);
    }
    return result;
}
