#include "workspaces_file.hpp"

#include "../text.hpp"
#include "files.hpp"
#include "settings.hpp"
#include "words.hpp"

#include <cstdlib>
#include <cstring>

static void take_option(ws_cfg &cfg, const cfg_pair &option)
{
    const std::string_view key{option.key};
    if (key == "output") {
        copy_text(cfg.output, option.value);
    } else if (key == "layout") {
        cfg.layout = cfg_layout(option.value);
        cfg.layout_set = true;
    } else if (key == "tile_mode") {
        cfg.tile_mode = tile_mode_from_name(option.value);
    }
}

// Reads "NAME, KEY=VALUE, ..." and cuts the text into pieces.
static void take_line(ws_cfg &cfg, char *text)
{
    cfg.set = true;
    char *rest = nullptr;
    char *name = strtok_r(text, ",", &rest);
    if (name == nullptr)
        return;
    copy_text(cfg.name, cfg_trim(name));
    while (char *piece = strtok_r(nullptr, ",", &rest))
        if (const auto option = cfg_split(piece))
            take_option(cfg, *option);
}

void config_parse_workspaces(const char *path)
{
    const config_file file = config_open(path);
    std::array<char, 512> line{};
    while (const auto pair = file != nullptr ? config_next_pair(*file, line) : std::nullopt) {
        const long num = strtol(pair->key, nullptr, 10);
        if (num >= 1 && num < long(g_ws_cfg.size()))
            take_line(g_ws_cfg[size_t(num)], pair->value);
    }
}
