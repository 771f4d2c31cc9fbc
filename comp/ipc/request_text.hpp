// Reads the texts of requests without a compositor: the words of commands, sizes, and what to capture.
#pragma once

#include "../wlr.hpp"

#include <array>
#include <optional>
#include <string>
#include <string_view>

// Splits a text into words at blanks, tabs and line ends. The text ends at its first null byte.
class ipc_words
{
public:
    explicit ipc_words(std::string_view source);
    ipc_words(const ipc_words &) = delete;
    ipc_words &operator=(const ipc_words &) = delete;
    // Returns null after the last word. A word lives as long as this object.
    const char *next();
    // Returns what follows the last word, without blanks and tabs before it and without blanks and line ends
    // behind it. Call it after next().
    std::string_view line() const;

private:
    std::string text;
    char *start; // null after the first word
    char *rest = nullptr;
};

struct ipc_size {
    int width, height;
    friend bool operator==(const ipc_size &, const ipc_size &) = default;
};

// Returns the window id of "id:N". Null and any other word give 0, which no window has.
uint32_t ipc_parse_window_id(const char *word);

// Reads "WIDTHxHEIGHT" and ignores what follows.
std::optional<ipc_size> ipc_parse_size(const char *text);

enum class capture_kind : unsigned char { window, output, region, everything };

struct capture_spec {
    capture_kind kind = capture_kind::window;
    uint32_t window_id = 0; // 0 is never a window
    std::array<char, 96> output_name{}; // empty or "@focused" for the current output
    wlr_box region{}; // layout coordinates
    int max_dim = 0; // longest side in pixels; 0 for no limit
};

// Reads at most 127 bytes, up to the first null byte. Every text is valid, and missing numbers are 0.
capture_spec ipc_parse_capture(std::string_view text);

// Returns the window id of a thumbnail request. Only its first 31 bytes are read.
uint32_t ipc_parse_thumbnail(std::string_view text);

struct capture_wish {
    uint32_t window_id = 0; // 0 is never a window
    int fps = 60; // 1 to 480
    friend bool operator==(const capture_wish &, const capture_wish &) = default;
};

// Reads a window id and how many frames a second are wanted, which may be missing. Only the first 63 bytes
// are read, and any other rate gives 60.
capture_wish ipc_parse_capture_wish(std::string_view text);
