#include "display_profiles.hpp"

#include "../text.hpp"
#include "output_steps.hpp"

#include <algorithm>
#include <array>

static constexpr size_t longest_line = 511, most_lines = 64, most_tokens = 16;

// Takes the next line off the text, or its next 511 bytes where it is longer.
static std::string_view take_line(std::string_view &text)
{
    const size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    const std::string_view line = text.substr(0, std::min(end, longest_line));
    text.remove_prefix(line.size());
    return line;
}

static std::string_view without_comment(std::string_view line)
{
    static constexpr std::string_view blanks = " \t\r\n";
    line = line.substr(0, line.find('\0'));
    line = line.substr(0, line.find('#'));
    line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
    return line.substr(0, line.find_last_not_of(blanks) + 1);
}

std::vector<display_profile> display_profiles_in(std::string_view text)
{
    std::vector<display_profile> profiles;
    while (!text.empty()) {
        const std::string_view line = without_comment(take_line(text));
        if (line.starts_with('['))
            profiles.emplace_back();
        else if (!line.empty() && !profiles.empty() && profiles.back().lines.size() < most_lines)
            profiles.back().lines.emplace_back(line);
    }
    return profiles;
}

// What a line says of a display. The token is empty for a line that is no command for an output.
struct said {
    std::string_view token, step;
};

static said said_in(std::string_view line)
{
    if (take_word(line) != "output")
        return {};
    const std::string_view token = take_word(line);
    return {.token = token, .step = take_word(line)};
}

static bool is_display(const connected_display &display, std::string_view token)
{
    return display.name == token || display.id == token;
}

// Displays beyond the 16th do not count.
class tokens
{
public:
    void add(std::string_view token)
    {
        if (!token.empty() && count < most_tokens && !std::ranges::contains(all(), token))
            at[count++] = token;
    }
    [[nodiscard]] bool name(const connected_display &display) const
    {
        return std::ranges::any_of(all(), [&](std::string_view token) { return is_display(display, token); });
    }

private:
    [[nodiscard]] std::span<const std::string_view> all() const { return std::span{at}.first(count); }
    std::array<std::string_view, most_tokens> at{};
    size_t count = 0;
};

// Returns how many displays the profile enables, or 0 if it does not fit.
static int enabled_by(const display_profile &profile, std::span<const connected_display> connected)
{
    tokens spoken_of;
    int enabled = 0;
    for (const std::string_view line : profile.lines) {
        const auto [token, step] = said_in(line);
        spoken_of.add(token);
        if (token.empty() || step != "enable")
            continue;
        if (std::ranges::none_of(connected, [&](const auto &display) { return is_display(display, token); }))
            return 0;
        enabled++;
    }
    const bool covers =
        std::ranges::all_of(connected, [&](const auto &display) { return spoken_of.name(display); });
    return covers ? enabled : 0;
}

std::optional<chosen_profile> display_profile_for(std::span<const display_profile> profiles,
                                                  std::span<const connected_display> connected)
{
    std::optional<chosen_profile> best;
    for (const display_profile &profile : profiles) {
        const int enabled = enabled_by(profile, connected);
        if (enabled > 0 && (!best || enabled < best->enabled))
            best = chosen_profile{.profile = profile, .enabled = enabled};
    }
    return best;
}

// Calls `use` with each position of a line and writes the line anew with what it returns.
template <class Use> static void rewrite_positions(std::string &line, Use use)
{
    std::string written;
    std::string_view words = line;
    for (std::string_view word = take_word(words); !word.empty(); word = take_word(words)) {
        written += written.empty() ? "" : " ";
        written += word;
        std::string_view behind = words;
        const std::string_view x_word = take_word(behind), y_word = take_word(behind);
        const auto x = whole_number(x_word), y = whole_number(y_word);
        if (word != "position" || !x || !y)
            continue;
        const layout_offset place = use(layout_offset{.x = *x, .y = *y});
        written += " " + std::to_string(place.x) + " " + std::to_string(place.y);
        words = behind;
    }
    line = written;
}

std::optional<layout_offset> anchor_to_origin(display_profile &profile)
{
    layout_offset least;
    for (std::string line : profile.lines)
        rewrite_positions(line, [&](const layout_offset &place) {
            least = {.x = std::min(least.x, place.x), .y = std::min(least.y, place.y)};
            return place;
        });
    if (least == layout_offset{})
        return std::nullopt;
    for (std::string &line : profile.lines)
        rewrite_positions(line, [&](const layout_offset &place) {
            return layout_offset{.x = place.x - least.x, .y = place.y - least.y};
        });
    return layout_offset{.x = -least.x, .y = -least.y};
}
