#include "desktop_entry.hpp"

#include "../config/files.hpp"
#include "../text.hpp"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <unistd.h>

// The longest path that is tried, without the terminating zero.
static constexpr size_t longest_path = 1023;

// The names that XDG_CURRENT_DESKTOP gives this session.
static constexpr std::string_view session_names[]{"Vantore", "GNOME"};

template <auto Field> static std::span<char> field(desktop_entry &entry)
{
    return entry.*Field;
}

struct text_key {
    std::string_view name;
    std::span<char> (*field)(desktop_entry &);
};

static constexpr text_key text_keys[]{
    {"Exec", field<&desktop_entry::exec>},
    {"TryExec", field<&desktop_entry::try_exec>},
    {"OnlyShowIn", field<&desktop_entry::only_show_in>},
    {"NotShowIn", field<&desktop_entry::not_show_in>},
    {"Type", field<&desktop_entry::type>},
};

struct flag_key {
    std::string_view name;
    std::string_view word; // the one value that sets the flag
    bool desktop_entry::*flag;
};

static constexpr flag_key flag_keys[]{
    {"Hidden", "true", &desktop_entry::hidden},
    {"X-GNOME-Autostart-enabled", "false", &desktop_entry::disabled},
};

static void take_pair(desktop_entry &entry, const cfg_pair &line)
{
    for (const text_key &known : text_keys)
        if (line.key == known.name)
            copy_text(known.field(entry), line.value);
    for (const flag_key &known : flag_keys)
        if (line.key == known.name)
            entry.*known.flag = line.value == known.word;
}

desktop_entry desktop_entry_read(FILE &file)
{
    desktop_entry entry;
    bool ours = false; // inside a [Desktop Entry] section
    std::array<char, 1024> buffer{};
    while (fgets(buffer.data(), int(buffer.size()), &file) != nullptr) {
        char *line = cfg_trim(buffer.data());
        if (*line == '[') {
            ours = std::string_view{line} == "[Desktop Entry]";
            continue;
        }
        if (!ours || *line == '#')
            continue;
        if (const auto pair = cfg_split(line))
            take_pair(entry, *pair);
    }
    return entry;
}

bool autostart_token_listed(std::string_view list, std::string_view token)
{
    while (!list.empty()) {
        const size_t end = std::min(list.find(';'), list.size());
        if (list.substr(0, end) == token)
            return true;
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return false;
}

static bool names_session(std::string_view list)
{
    return std::ranges::any_of(session_names,
                               [list](std::string_view name) { return autostart_token_listed(list, name); });
}

bool autostart_show_here(std::string_view only, std::string_view not_in)
{
    return (only.empty() || names_session(only)) && !names_session(not_in);
}

static bool lies_in(std::string_view directory, std::string_view prog)
{
    if (directory.empty() || directory.size() + 1 + prog.size() > longest_path)
        return false;
    std::string path{directory};
    path += '/';
    path += prog;
    return access(path.c_str(), X_OK) == 0;
}

bool autostart_prog_ok(const char *prog)
{
    const std::string_view name{prog};
    if (name.contains('/'))
        return access(prog, X_OK) == 0;
    const char *path = getenv("PATH");
    std::string_view rest{path != nullptr ? path : ""};
    while (!rest.empty()) {
        const size_t end = std::min(rest.find(':'), rest.size());
        if (lies_in(rest.substr(0, end), name))
            return true;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return false;
}

void autostart_strip_fields(std::string_view in, std::span<char> out)
{
    size_t length = 0;
    for (size_t i = 0; i < in.size() && length + 1 < out.size(); i++) {
        const bool code = in[i] == '%' && i + 1 < in.size();
        if (code)
            i++;
        if (!code || in[i] == '%')
            out[length++] = in[i];
    }
    out[length] = '\0';
}

bool desktop_entry_wanted(const desktop_entry &entry)
{
    if (entry.hidden || entry.disabled || entry.exec[0] == '\0')
        return false;
    if (entry.type[0] != '\0' && !text_equals(entry.type, "Application"))
        return false;
    if (!autostart_show_here(text_of(entry.only_show_in), text_of(entry.not_show_in)))
        return false;
    return entry.try_exec[0] == '\0' || autostart_prog_ok(entry.try_exec.data());
}
