// One desktop entry of the user's autostart directory: what it says, and what of that this session heeds.
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

// Reads the file's [Desktop Entry] sections. Of a key that stands twice the last counts; localised keys are
// other keys. Longer values are cut.
desktop_entry desktop_entry_read(FILE &file);

// Exactly one of the pieces between semicolons.
bool autostart_token_listed(std::string_view list, std::string_view token);

// Whether an entry for these desktops, and not for those, is for this one. Empty lists name all and none.
bool autostart_show_here(std::string_view only, std::string_view not_in);

// Whether the program can be run: a path itself, a name in a directory of PATH.
bool autostart_prog_ok(const char *prog);

// Copies a command line without its field codes; two percent signs become one. What does not fit is cut.
void autostart_strip_fields(std::string_view in, std::span<char> out);

// Whether the session starts it.
bool desktop_entry_wanted(const desktop_entry &entry);
