// Growable text, for replies and other texts that are assembled from pieces.
#pragma once

#include <cstddef>
#include <string_view>

struct strbuf {
    char *data = nullptr; // null-terminated; null until the first append
    size_t len = 0;
    size_t cap = 0;

    strbuf() = default;
    ~strbuf();
    strbuf(const strbuf &) = delete;
    strbuf &operator=(const strbuf &) = delete;

    [[nodiscard]] std::string_view text() const { return {data, len}; }
};

// If memory runs out, an append logs that and leaves the text as it was.
void sb_append(strbuf &sb, const void *bytes, size_t n);
[[gnu::format(printf, 2, 3)]] void sb_appendf(strbuf &sb, const char *format, ...);

// Appends a JSON string with its quotes; null gives an empty string. Quotes, backslashes and bytes below 0x20
// are escaped. All other bytes pass unchanged, even if they are not valid UTF-8.
void sb_jstr(strbuf &sb, const char *text);
