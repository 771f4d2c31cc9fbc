// Growable text, for replies and other texts that are put together from pieces.
#pragma once

#include <cstddef>
#include <string_view>

struct strbuf {
    char *data = nullptr; // null-terminated; null while nothing was ever appended
    size_t len = 0;
    size_t cap = 0;

    strbuf() = default;
    ~strbuf();
    strbuf(const strbuf &) = delete;
    strbuf &operator=(const strbuf &) = delete;

    [[nodiscard]] std::string_view text() const { return {data, len}; }
};

// Where memory runs out, an append logs that and leaves the text as it was.
void sb_append(strbuf &sb, const void *bytes, size_t n);
[[gnu::format(printf, 2, 3)]] void sb_appendf(strbuf &sb, const char *format, ...);

// Appends a JSON string with its quotes. Null gives the empty string. Bytes from 0x20 on pass unchanged,
// also where they are no valid UTF-8.
void sb_jstr(strbuf &sb, const char *text);
