#include "settings_files.hpp"

#include "../text.hpp"
#include "settings_apply.hpp"

#include <cstdlib>
#include <unistd.h>

static constexpr const char *standard_wallpaper = "/usr/share/vantore/wallpapers/Vantore.png";

// Returns the number of unknown keys.
static int parse(setting_file which, const char *path, vantore_server *server)
{
    const config_file file = config_open(path);
    if (file == nullptr)
        return 0;
    int unknown = 0;
    std::array<char, 512> line{};
    while (const auto pair = config_next_pair(*file, line))
        if (!settings_take(which, *pair, server))
            unknown++;
    settings_clamp(which);
    return unknown;
}

void config_parse_compositor(vantore_server &server, const char *path)
{
    g_config_errors += parse(setting_file::compositor, path, &server);
}

void config_parse_input(const char *path)
{
    g_config_errors += parse(setting_file::input, path, nullptr);
}

void config_parse_dock(const char *path)
{
    parse(setting_file::dock, path, nullptr);
}

void config_parse_panel(const char *path)
{
    parse(setting_file::panel, path, nullptr);
}

void config_resolve_wallpaper(std::span<char> wallpaper, const char *standard)
{
    if (text_of(wallpaper).empty() && access(standard, R_OK) == 0)
        copy_text(wallpaper, standard);
    else if (text_equals(wallpaper, "none"))
        copy_text(wallpaper, "");
}

// A '#' starts no comment here, because colours and paths may contain it.
void config_parse_appearance(const char *path)
{
    settings_reset(setting_file::appearance);
    const config_file file = config_open(path);
    std::array<char, 1100> line{};
    while (file != nullptr && fgets(line.data(), int(line.size()), file.get()) != nullptr)
        if (const auto pair = cfg_split(line.data()))
            (void)settings_take(setting_file::appearance, *pair, nullptr);
    const char *other_standard = getenv("VANTORE_STANDARD_WALLPAPER");
    config_resolve_wallpaper(g_wallpaper, other_standard != nullptr ? other_standard : standard_wallpaper);
}
