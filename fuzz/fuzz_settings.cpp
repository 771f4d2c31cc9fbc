// Reads any bytes as each of the settings files, on top of the defaults.

#include "config/files.hpp"
#include "config/settings_apply.hpp"
#include "config/settings_files.hpp"
#include "config/workspaces_file.hpp"
#include "fuzzing.hpp"
#include "server.hpp"

#include <algorithm>
#include <cstring>

static void require_text(std::span<const char> text)
{
    require(memchr(text.data(), '\0', text.size()) != nullptr);
}

struct checking {
    const vantore_server &server;

    void operator()(const text_setting &kind) const { require_text(kind.stored); }
    template <class T> void operator()(const number_setting<T> &kind) const
    {
        require(*kind.stored >= kind.least && *kind.stored <= kind.most);
    }
    void operator()(const server_setting &kind) const
    {
        const uint32_t modifier = server.*kind.stored;
        require(modifier == WLR_MODIFIER_ALT || modifier == WLR_MODIFIER_CTRL ||
                modifier == WLR_MODIFIER_LOGO);
    }
    template <class Kind> void operator()(const Kind &) const {}
};

static void check_overrides()
{
    require(g_wp_override_count >= 0 && g_wp_override_count <= int(g_wp_overrides.size()));
    for (const wp_override &o : std::span{g_wp_overrides}.first(size_t(g_wp_override_count))) {
        require_text(o.name);
        require_text(o.path);
        require(o.mode >= -1 && o.mode <= WP_CENTER);
        require(o.interval == -1 || o.interval >= 1);
    }
}

static void check_workspaces()
{
    require(!g_ws_cfg[0].set);
    for (const ws_cfg &cfg : g_ws_cfg) {
        require_text(cfg.name);
        require_text(cfg.output);
        require(cfg.tile_mode <= TM_MONOCLE);
        require(cfg.set || (!cfg.layout_set && cfg.name[0] == '\0' && cfg.output[0] == '\0'));
    }
}

static void check_appearance()
{
    require(g_theme_kind >= 0 && g_theme_kind <= 2);
    require(g_wp_interval >= 1);
    require(std::ranges::all_of(g_accent, [](float part) { return part >= 0 && part <= 1; }));
    require(g_max_render_time >= -1 && g_max_render_time <= 100);
    require_text(g_panel_screen_name);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static vantore_server server;
    g_config_errors = 0;
    g_ws_cfg = {};
    settings_begin(server);
    using enum setting_file;
    for (const setting_file file : {compositor, input, appearance, dock, panel})
        settings_reset(file);
    const char *path = write_file(data, size);
    config_parse_compositor(server, path);
    config_parse_input(path);
    config_parse_workspaces(path);
    config_parse_appearance(path);
    config_parse_dock(path);
    config_parse_panel(path);
    for (const setting &row : settings())
        std::visit(checking{server}, row.kind);
    check_overrides();
    check_workspaces();
    check_appearance();
    require(g_config_errors <= 2 * int(std::count(data, data + size, '=')));
    return 0;
}
