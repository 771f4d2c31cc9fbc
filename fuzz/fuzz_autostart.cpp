// Reads any bytes as a desktop entry of the autostart directory.

#include "config/files.hpp"
#include "fuzzing.hpp"
#include "session/desktop_entry.hpp"
#include "text.hpp"

#include <algorithm>
#include <cstring>

static void check_text(std::span<const char> text)
{
    require(memchr(text.data(), '\0', text.size()) != nullptr);
}

// A field code of two characters disappears, and a pair of percent signs becomes one.
static void check_command(const desktop_entry &entry)
{
    std::array<char, 1024> command;
    command.fill('x');
    autostart_strip_fields(text_of(entry.exec), command);
    check_text(command);
    const auto percents = [](std::string_view text) { return std::ranges::count(text, '%'); };
    require(text_of(command).size() <= text_of(entry.exec).size());
    require(percents(text_of(command)) <= (percents(text_of(entry.exec)) + 1) / 2);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const config_file file = config_open(write_file(data, size));
    require(file != nullptr);
    const desktop_entry entry = desktop_entry_read(*file);
    check_text(entry.exec);
    check_text(entry.try_exec);
    check_text(entry.only_show_in);
    check_text(entry.not_show_in);
    check_text(entry.type);
    check_command(entry);
    const bool wanted = desktop_entry_wanted(entry);
    require(!wanted || (!entry.hidden && !entry.disabled && entry.exec[0] != '\0'));
    return 0;
}
