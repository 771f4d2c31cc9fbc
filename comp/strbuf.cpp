#include "strbuf.hpp"

#include "wlr.hpp"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

static constexpr size_t first_capacity = 256;

strbuf::~strbuf()
{
    free(data);
}

// Makes room for n more bytes and the terminator. Returns false, after logging it, if memory runs out.
static bool reserve(strbuf &sb, size_t n)
{
    size_t cap = sb.cap > 0 ? sb.cap : first_capacity;
    while (cap < sb.len + n + 1)
        cap *= 2;
    if (cap == sb.cap)
        return true;
    auto *grown = static_cast<char *>(realloc(sb.data, cap));
    if (grown == nullptr) {
        wlr_log(WLR_ERROR, "vantore-comp: no memory for a text of %zu bytes, it is cut", cap);
        return false;
    }
    sb.data = grown;
    sb.cap = cap;
    return true;
}

void sb_append(strbuf &sb, const void *bytes, size_t n)
{
    if (!reserve(sb, n))
        return;
    if (n > 0)
        memcpy(sb.data + sb.len, bytes, n);
    sb.len += n;
    sb.data[sb.len] = '\0';
}

void sb_appendf(strbuf &sb, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    va_list again;
    va_copy(again, args);
    const size_t room = sb.cap - sb.len;
    const int n = vsnprintf(room > 0 ? sb.data + sb.len : nullptr, room, format, args);
    const bool fits = n > 0 && size_t(n) < room;
    if (fits || (n > 0 && reserve(sb, size_t(n)))) {
        if (!fits)
            vsnprintf(sb.data + sb.len, size_t(n) + 1, format, again);
        sb.len += size_t(n);
    } else if (sb.data != nullptr) {
        sb.data[sb.len] = '\0'; // drops the part that was formatted
    }
    va_end(again);
    va_end(args);
}

// Returns null for a byte without a short escape.
static const char *short_escape(char byte)
{
    switch (byte) {
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        return nullptr;
    }
}

static bool stands_for_itself(char byte)
{
    return static_cast<unsigned char>(byte) >= 0x20 && byte != '"' && byte != '\\';
}

static void append_escaped(strbuf &sb, char byte)
{
    if (const char *escape = short_escape(byte))
        sb_append(sb, escape, 2);
    else
        sb_appendf(sb, "\\u%04x", static_cast<unsigned char>(byte));
}

void sb_jstr(strbuf &sb, const char *text)
{
    sb_append(sb, "\"", 1);
    for (const char *at = text != nullptr ? text : ""; *at != '\0';) {
        const char *end = at;
        while (stands_for_itself(*end))
            end++;
        sb_append(sb, at, size_t(end - at));
        at = end;
        if (*at != '\0')
            append_escaped(sb, *at++);
    }
    sb_append(sb, "\"", 1);
}
