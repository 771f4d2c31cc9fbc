#include "autostart.hpp"

#include "../config/files.hpp"
#include "../spawn.hpp"
#include "../text.hpp"
#include "desktop_entry.hpp"

#include <cstdlib>
#include <dirent.h>
#include <string>

static constexpr std::string_view entry_suffix = ".desktop";

void spawn_autostart()
{
    std::array<char, 600> path{};
    config_path(path, "autostart.conf");
    const config_file file = config_open(path.data());
    std::array<char, 512> buffer{};
    while (file != nullptr && fgets(buffer.data(), int(buffer.size()), file.get()) != nullptr)
        if (const char *line = cfg_without_comment(buffer.data()); *line != '\0')
            spawn_detached(line);
}

static bool is_set(const char *variable)
{
    return variable != nullptr && *variable != '\0';
}

// Returns an empty string if the environment names no directory.
static std::string xdg_autostart_directory()
{
    const char *config = getenv("XDG_CONFIG_HOME");
    const char *home = getenv("HOME");
    if (is_set(config))
        return std::string{config} + "/autostart";
    return is_set(home) ? std::string{home} + "/.config/autostart" : "";
}

static bool is_entry_name(std::string_view name)
{
    return name.size() > entry_suffix.size() && name.ends_with(entry_suffix);
}

static void start_entry(const std::string &path)
{
    const config_file file = config_open(path.c_str());
    if (file == nullptr)
        return;
    const desktop_entry entry = desktop_entry_read(*file);
    if (!desktop_entry_wanted(entry))
        return;
    std::array<char, 1024> command{};
    autostart_strip_fields(text_of(entry.exec), command);
    if (const char *line = cfg_trim(command.data()); *line != '\0')
        spawn_detached(line);
}

void spawn_xdg_autostart()
{
    const std::string path = xdg_autostart_directory();
    const handle<DIR, closedir> directory{path.empty() ? nullptr : opendir(path.c_str())};
    while (const dirent *found = directory != nullptr ? readdir(directory.get()) : nullptr)
        if (is_entry_name(found->d_name))
            start_entry(path + '/' + found->d_name);
}
