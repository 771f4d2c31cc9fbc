#include "arguments.hpp"

#include "errors.hpp"

#include <charconv>
#include <optional>
#include <span>

const std::string_view usage =
    R"(usage: vantore-msg COMMAND

  command WORD...            runs a command of the compositor
  workspaces                 lists the workspaces
  windows                    lists the windows
  outputs                    lists the outputs
  subscribe                  prints a line for each event until Ctrl-C
  capture [--max N] WHAT FILE
                             writes a picture as PNG; FILE - is the standard output. With --max its longer
                             side has at most N pixels. WHAT is one of
                               all                  all outputs
                               output [NAME]        one output, the current one without a name
                               region X Y W H       a part of the layout
                               window ID            what a window has drawn, as "windows" lists it
  capture --dmabuf ID        describes the buffer in graphics memory that holds a window's picture
  record [--fps N] [--frames N] [--raw] ID FOLDER
                             writes what a window draws into a folder, as PNG files or, with --raw, as files of
                             bytes (red, green, blue, alpha) that carry the picture's size in their names.
                             Takes about 60 pictures a second, or as many as --fps says, 480 at most, and
                             passes over pictures that come faster. Ends when the window closes, when an X11
                             window is unmapped, after as many pictures as --frames says, or with Ctrl-C. A
                             recording that another program began earlier gets no more pictures and waits until
                             Ctrl-C
  --help                     prints this text

Lists are tables on a terminal and JSON otherwise. The compositor is found by VANTORESOCK.
Exit status: 0 done; 1 the compositor can't be reached or refused, or a folder or file can't be written;
2 the arguments are wrong.
)";

using words_left = std::span<const std::string>;

static constexpr std::string_view blanks = " \t\r\n\v\f";
static constexpr size_t longest_name = 95; // the longest name that a request can carry, in bytes

template <class Number> static std::optional<Number> number_from(std::string_view text, Number smallest)
{
    Number value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool sound = error == std::errc{} && end == text.data() + text.size() && value >= smallest;
    return sound ? std::optional{value} : std::nullopt;
}

// Ids have 32 bits and begin at 1.
static bool is_window_id(std::string_view text)
{
    return number_from<uint32_t>(text, 1).has_value();
}

static std::expected<std::string, std::string> region_spec(words_left words)
{
    if (words.size() != 4)
        return wrong("capture region takes X Y W H and a file");
    for (size_t i = 0; i < words.size(); i++)
        if (!number_from(words[i], i < 2 ? -1'000'000 : 1))
            return wrong("'" + words[i] + "' is no " + (i < 2 ? "coordinate" : "size"));
    return "region " + words[0] + " " + words[1] + " " + words[2] + " " + words[3];
}

// The compositor reads a name as one word and cuts a longer one, so the name is checked here.
static std::expected<std::string, std::string> output_spec(words_left words)
{
    if (words.size() > 1)
        return wrong("capture output takes one name at most");
    const std::string name = words.empty() ? "@focused" : words[0];
    if (name.empty() || name.size() > longest_name || name.find_first_of(blanks) != std::string::npos)
        return wrong("'" + name + "' is no name of an output");
    return "output " + name;
}

static std::expected<std::string, std::string> capture_spec(words_left words)
{
    if (words.empty())
        return wrong("capture what? One of all, output, region, window");
    const words_left rest = words.subspan(1);
    if (words[0] == "all")
        return rest.empty() ? std::expected<std::string, std::string>{"all"}
                            : wrong("capture all takes a file only");
    if (words[0] == "output")
        return output_spec(rest);
    if (words[0] == "region")
        return region_spec(rest);
    if (words[0] != "window")
        return wrong("capture knows all, output, region and window, not '" + words[0] + "'");
    if (rest.size() != 1 || !is_window_id(rest[0]))
        return wrong("capture window takes the window's id and a file");
    return "window " + rest[0];
}

static std::expected<request, std::string> description_request(words_left words)
{
    if (words.size() != 1 || !is_window_id(words[0]))
        return wrong("capture --dmabuf takes the window's id");
    return request{.what = action::describe, .message = VNT_MSG_CAPTURE_DMABUF, .payload = words[0]};
}

static std::expected<request, std::string> capture_request(words_left words)
{
    if (!words.empty() && words[0] == "--dmabuf")
        return description_request(words.subspan(1));
    std::string limit = "0";
    if (words.size() >= 2 && words[0] == "--max") {
        if (!number_from(words[1], 1))
            return wrong("--max takes a number of pixels, not '" + words[1] + "'");
        limit = words[1];
        words = words.subspan(2);
    }
    if (words.size() < 2)
        return wrong("capture takes what to capture and a file");
    if (words.back().empty())
        return wrong("the file has no name");
    auto spec = capture_spec(words.first(words.size() - 1));
    if (!spec)
        return std::unexpected{std::move(spec.error())};
    return request{.what = action::capture,
                   .message = VNT_MSG_CAPTURE,
                   .payload = *spec + " " + limit,
                   .file = words.back()};
}

struct record_options {
    int fps = 60, pictures = 0;
    bool raw = false;
};

// Takes an option and its number off the front of the words.
static std::expected<int, std::string> take_number(words_left &words)
{
    const std::string needed = words[0] + " takes a number from 1";
    if (words.size() < 2)
        return wrong(needed);
    const auto number = number_from(words[1], 1);
    if (!number)
        return wrong(needed + ", not '" + words[1] + "'");
    words = words.subspan(2);
    return *number;
}

// Takes the options off the front of the words.
static std::expected<record_options, std::string> take_record_options(words_left &words)
{
    record_options options;
    while (!words.empty() && words[0].starts_with("--")) {
        const std::string &name = words[0];
        if (name == "--raw") {
            options.raw = true;
            words = words.subspan(1);
            continue;
        }
        if (name != "--fps" && name != "--frames")
            return wrong("record knows --fps, --frames and --raw, not '" + name + "'");
        const auto number = take_number(words);
        if (!number)
            return wrong(number.error());
        (name == "--fps" ? options.fps : options.pictures) = *number;
    }
    return options;
}

static std::expected<request, std::string> record_request(words_left words)
{
    const auto options = take_record_options(words);
    if (!options)
        return wrong(options.error());
    if (options->fps > ipc_most_fps)
        return wrong("--fps takes at most " + std::to_string(ipc_most_fps));
    if (words.size() != 2 || !is_window_id(words[0]) || words[1].empty())
        return wrong("record takes the window's id and a folder");
    return request{.what = action::record,
                   .message = VNT_MSG_CAPTURE_SUBSCRIBE,
                   .payload = words[0] + " " + std::to_string(options->fps),
                   .file = words[1],
                   .pictures = options->pictures,
                   .raw = options->raw};
}

static std::expected<request, std::string> command_request(words_left words)
{
    std::string text;
    for (const std::string &word : words)
        text += (text.empty() ? "" : " ") + word;
    if (text.find_first_not_of(blanks) == std::string::npos)
        return wrong("command takes the words of a command");
    if (text.size() > ipc_largest_request)
        return wrong("the command is too long");
    return request{
        .what = action::command, .message = VNT_MSG_COMMAND, .payload = std::move(text), .file = ""};
}

struct plain_command {
    std::string_view name;
    action what;
    vnt_ipc_msg message;
};

static constexpr plain_command plain_commands[]{
    {"workspaces", action::show, VNT_MSG_GET_WORKSPACES},
    {"windows", action::show, VNT_MSG_GET_WINDOWS},
    {"outputs", action::show, VNT_MSG_GET_OUTPUTS},
    {"subscribe", action::subscribe, VNT_MSG_SUBSCRIBE},
    {"--help", action::help, VNT_MSG_COMMAND},
};

std::expected<request, std::string> parse_arguments(const std::vector<std::string> &words)
{
    if (words.empty())
        return wrong("no command; see vantore-msg --help");
    const words_left rest = words_left{words}.subspan(1);
    if (words[0] == "command")
        return command_request(rest);
    if (words[0] == "capture")
        return capture_request(rest);
    if (words[0] == "record")
        return record_request(rest);
    for (const plain_command &command : plain_commands) {
        if (words[0] != command.name)
            continue;
        if (!rest.empty())
            return wrong(words[0] + " takes no arguments");
        return request{.what = command.what, .message = command.message, .payload = "", .file = ""};
    }
    return wrong("there is no command '" + words[0] + "'; see vantore-msg --help");
}
