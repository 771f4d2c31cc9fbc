// Reads a desktop entry of the user's autostart directory and decides whether this session starts it.
#pragma once

#include <array>
#include <cstdio>
#include <span>
#include <string_view>

struct desktop_entry {
    std::array<char, 1024> exec{};
    std::array<char, 512> try_exec{};
    std::array<char, 512> only_show_in{}, not_show_in{}; // lists of desktops
    std::array<char, 128> type{};
    bool hidden = false;
    bool disabled = false;
};

// Reads the file's [Desktop Entry] sections. The last of several equal keys counts, and a localised key is a
// different key. Values that do not fit are cut.
desktop_entry desktop_entry_read(FILE &file);

// Tells whether the token is exactly one of the pieces between semicolons.
bool autostart_token_listed(std::string_view list, std::string_view token);

// Tells whether an entry is meant for this session. An empty `only` names all desktops, and an empty `not_in`
// names none.
bool autostart_show_here(std::string_view only, std::string_view not_in);

// Tells whether the program can be run. A text with a slash is a path; any other text is looked up in PATH.
bool autostart_prog_ok(const char *prog);

// Copies a command line without its field codes. Two percent signs become one. A line that does not fit is
// cut.
void autostart_strip_fields(std::string_view in, std::span<char> out);

// Tells whether the session starts the entry.
bool desktop_entry_wanted(const desktop_entry &entry);
