#include "load.hpp"

#include "../server.hpp"
#include "default_texts.hpp"
#include "files.hpp"
#include "keybinds.hpp"
#include "rules.hpp"
#include "settings_apply.hpp"
#include "settings_files.hpp"
#include "theme.hpp"
#include "words.hpp"
#include "workspaces_file.hpp"

#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

static constexpr mode_t directory_mode = 0755;

static void reset()
{
    using enum setting_file;
    g_config_errors = 0;
    g_ws_cfg = {};
    g_rule_count = 0;
    for (const setting_file file : {compositor, input, appearance, dock, panel})
        settings_reset(file);
}

// Creates the directory and its parent, and nothing above them.
static void make_directory(std::span<char> path)
{
    if (char *last = strrchr(path.data(), '/')) {
        *last = '\0';
        mkdir(path.data(), directory_mode);
        *last = '/';
    }
    mkdir(path.data(), directory_mode);
}

static std::array<char, 600> path_of(const char *name)
{
    std::array<char, 600> path{};
    config_path(path, name);
    return path;
}

void config_load(vantore_server &server)
{
    reset();
    std::array<char, 512> directory{};
    config_dir(directory);
    make_directory(directory);
    config_write_defaults(directory.data());
    config_parse_compositor(server, path_of("compositor.conf").data());
    config_parse_input(path_of("input.conf").data());
    config_parse_workspaces(path_of("workspaces.conf").data());
    config_parse_rules(path_of("rules.conf").data()); // rules may name workspaces
    config_parse_appearance(path_of("appearance.conf").data());
    recompute_titlebar_colors();
    config_parse_dock(path_of("dock.conf").data());
    config_parse_panel(path_of("panel.conf").data());
    if (const char *modifier = getenv("VANTORE_MOD"))
        server.wm_modifier = cfg_modifier(modifier);
    config_load_keybinds(server); // the bindings use the modifier
}
