#include "request_text.hpp"

#include "../text.hpp"
#include "protocol.hpp"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <utility>

static constexpr const char *blanks = " \t\r\n";
static constexpr size_t longest_capture = 127;
static constexpr size_t longest_thumbnail = 31;
static constexpr size_t longest_wish = 63;

static std::string up_to_null(std::string_view text)
{
    return std::string{text.substr(0, text.find('\0'))};
}

ipc_words::ipc_words(std::string_view source) : text(up_to_null(source)), start(text.data()) {}

const char *ipc_words::next()
{
    return strtok_r(std::exchange(start, nullptr), blanks, &rest);
}

std::string_view ipc_words::line() const
{
    std::string_view left = rest != nullptr ? rest : "";
    left.remove_prefix(std::min(left.find_first_not_of(" \t"), left.size()));
    return left.substr(0, left.find_last_not_of(" \n\r") + 1);
}

// Reads a number and moves `at` past it. If there is none, it returns false and changes nothing. A number
// that does not fit gives the nearest int.
static bool take_int(const char *&at, int &number)
{
    char *end = nullptr;
    const long value = strtol(at, &end, 10);
    if (end == at)
        return false;
    number = int(std::clamp(value, long{INT_MIN}, long{INT_MAX}));
    at = end;
    return true;
}

// Returns 0, which no window has, if the text is not a number or the number is too large.
static uint32_t take_id(const char *&at)
{
    char *end = nullptr;
    const unsigned long value = strtoul(at, &end, 10);
    at = end;
    return value <= UINT32_MAX ? uint32_t(value) : 0;
}

static int take_limit(const char *&at)
{
    int limit = 0;
    take_int(at, limit);
    return std::max(limit, 0);
}

static std::string_view take_word(const char *&at, size_t longest)
{
    const char *begin = at + strspn(at, " \t\r\n\v\f");
    at = begin + std::min(strcspn(begin, " \t\r\n\v\f"), longest);
    return {begin, at};
}

uint32_t ipc_parse_window_id(const char *word)
{
    static constexpr std::string_view prefix = "id:";
    if (word == nullptr || !std::string_view{word}.starts_with(prefix))
        return 0;
    word += prefix.size();
    return take_id(word);
}

std::optional<ipc_size> ipc_parse_size(const char *text)
{
    ipc_size size{};
    if (!take_int(text, size.width) || *text != 'x')
        return std::nullopt;
    text++;
    return take_int(text, size.height) ? std::optional{size} : std::nullopt;
}

static void read_window(const char *at, capture_spec &spec)
{
    spec.window_id = take_id(at);
    spec.max_dim = take_limit(at);
}

static void read_output(const char *at, capture_spec &spec)
{
    spec.kind = capture_kind::output;
    copy_text(spec.output_name, take_word(at, spec.output_name.size() - 1));
    spec.max_dim = take_limit(at);
}

static void read_region(const char *at, capture_spec &spec)
{
    spec.kind = capture_kind::region;
    for (int *field : {&spec.region.x, &spec.region.y, &spec.region.width, &spec.region.height})
        if (!take_int(at, *field))
            return;
    spec.max_dim = take_limit(at);
}

static void read_everything(const char *at, capture_spec &spec)
{
    spec.kind = capture_kind::everything;
    spec.max_dim = take_limit(at);
}

struct capture_word {
    std::string_view word;
    void (*read)(const char *at, capture_spec &spec);
};

static constexpr capture_word capture_words[]{
    {"out", read_output},     {"output", read_output}, {"reg", read_region},    {"region", read_region},
    {"all", read_everything}, {"win", read_window},    {"window", read_window},
};

capture_spec ipc_parse_capture(std::string_view text)
{
    const std::string cut = up_to_null(text.substr(0, longest_capture));
    const char *at = cut.c_str();
    const std::string_view first = take_word(at, cut.size());
    capture_spec spec;
    const auto *found = std::ranges::find(capture_words, first, &capture_word::word);
    if (found != std::end(capture_words))
        found->read(at, spec);
    else
        read_window(cut.c_str(), spec);
    return spec;
}

uint32_t ipc_parse_thumbnail(std::string_view text)
{
    const std::string cut = up_to_null(text.substr(0, longest_thumbnail));
    const char *at = cut.c_str();
    return take_id(at);
}

capture_wish ipc_parse_capture_wish(std::string_view text)
{
    const std::string cut = up_to_null(text.substr(0, longest_wish));
    const char *at = cut.c_str();
    capture_wish wish{.window_id = take_id(at)};
    int fps = 0;
    if (take_int(at, fps) && fps >= 1 && fps <= ipc_most_fps)
        wish.fps = fps;
    return wish;
}
