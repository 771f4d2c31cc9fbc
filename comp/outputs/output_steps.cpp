#include "output_steps.hpp"

#include "../text.hpp"

#include <algorithm>
#include <charconv>
#include <limits>

// No display or layout needs more, and sums of these numbers still fit into an int.
static constexpr int farthest = 1'000'000, largest_side = 32'768, fastest_hz = 100'000;
static constexpr double least_scale = 0.1, greatest_scale = 20;

template <class Number> static std::optional<Number> number_at(std::string_view &text)
{
    if (text.starts_with('+'))
        text.remove_prefix(1);
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} && error != std::errc::result_out_of_range)
        return std::nullopt;
    using limits = std::numeric_limits<Number>;
    if (error == std::errc::result_out_of_range)
        number = text.starts_with('-') ? limits::lowest() : limits::max();
    text.remove_prefix(size_t(end - text.data()));
    return number;
}

static wl_output_transform transform_named(std::string_view word)
{
    static constexpr std::string_view names[]{"normal",  "90",         "180",         "270",
                                              "flipped", "flipped-90", "flipped-180", "flipped-270"};
    const auto *found = std::ranges::find(names, word);
    return found != std::end(names) ? wl_output_transform(found - names) : WL_OUTPUT_TRANSFORM_NORMAL;
}

using steps = std::vector<output_step>;

static bool read_transform(std::string_view &words, steps &into)
{
    const std::string_view word = take_word(words);
    if (word.empty())
        return false;
    into.emplace_back(output_transform{transform_named(word)});
    return true;
}

static bool read_scale(std::string_view &words, steps &into)
{
    std::string_view word = take_word(words);
    if (word.empty())
        return false;
    const auto factor = number_at<double>(word);
    if (factor && *factor >= least_scale && *factor <= greatest_scale)
        into.emplace_back(output_scale{*factor});
    return true;
}

std::optional<int> whole_number(std::string_view word)
{
    const auto number = number_at<int>(word);
    if (!number || !word.empty())
        return std::nullopt;
    return std::clamp(*number, -farthest, farthest);
}

static bool read_position(std::string_view &words, steps &into)
{
    const std::string_view x_word = take_word(words), y_word = take_word(words);
    if (y_word.empty())
        return false;
    const auto x = whole_number(x_word), y = whole_number(y_word);
    if (x && y)
        into.emplace_back(output_position{.x = *x, .y = *y});
    return true;
}

// Reads "WIDTHxHEIGHT" and the rate of "@RATE" behind it, if there is one. The unit "Hz" is not looked at.
static std::optional<output_mode_wish> mode_in(std::string_view text)
{
    const auto width = number_at<int>(text);
    if (!width || !text.starts_with('x'))
        return std::nullopt;
    text.remove_prefix(1);
    const auto height = number_at<int>(text);
    if (!height || *width < 1 || *width > largest_side || *height < 1 || *height > largest_side)
        return std::nullopt;
    int rate = 0;
    if (text.starts_with('@')) {
        text.remove_prefix(1);
        rate = std::clamp(number_at<int>(text).value_or(0), 0, fastest_hz);
    }
    return output_mode_wish{.width = *width, .height = *height, .refresh_hz = rate};
}

static bool read_mode(std::string_view &words, steps &into)
{
    const std::string_view word = take_word(words);
    if (word.empty())
        return false;
    if (const auto mode = mode_in(word))
        into.emplace_back(*mode);
    return true;
}

// Returns 0 for a word that is no id.
static uint32_t window_id(std::string_view word)
{
    uint32_t id = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), id);
    return error == std::errc{} && end == word.data() + word.size() ? id : 0;
}

static bool read_mirror(std::string_view &words, steps &into)
{
    const std::string_view kind = take_word(words);
    const bool has_source = kind == "window" || kind == "output" || kind == "screen";
    const std::string_view source = has_source ? take_word(words) : std::string_view{};
    into.emplace_back(
        output_mirror{.kind = std::string{kind}, .source = std::string{source}, .window = window_id(source)});
    return true;
}

template <class Step> static bool read_plain(std::string_view &, steps &into)
{
    into.emplace_back(Step{});
    return true;
}

struct step_word {
    std::string_view name;
    bool (*read)(std::string_view &words, steps &into); // returns false when an argument is missing
};

static constexpr step_word step_words[]{
    {"enable", read_plain<output_enable>},
    {"disable", read_plain<output_disable>},
    {"transform", read_transform},
    {"scale", read_scale},
    {"position", read_position},
    {"mode", read_mode},
    {"mirror", read_mirror},
};

std::vector<output_step> output_steps_in(std::string_view words)
{
    steps all;
    for (std::string_view word = take_word(words); !word.empty(); word = take_word(words)) {
        const auto *found = std::ranges::find(step_words, word, &step_word::name);
        if (found == std::end(step_words))
            all.emplace_back(output_unhandled{std::string{word}});
        else if (!found->read(words, all))
            break;
    }
    return all;
}
