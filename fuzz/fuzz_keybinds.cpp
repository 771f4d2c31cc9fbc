// Reads any bytes as a user's keybinds.conf, on top of the default bindings.

#include "config/files.hpp"
#include "config/keybinds.hpp"
#include "fuzzing.hpp"
#include "server.hpp"

#include <algorithm>
#include <cstring>

static void check(const vnt_bind &bind)
{
    constexpr uint32_t modifiers =
        WLR_MODIFIER_SHIFT | WLR_MODIFIER_CTRL | WLR_MODIFIER_ALT | WLR_MODIFIER_LOGO;
    require((bind.mods & ~modifiers) == 0);
    require(bind.keysym != XKB_KEY_NoSymbol);
    require(bind.act != ACT_NONE && bind.act <= ACT_MOVE_WINDOW_OUTPUT);
    require(memchr(bind.spawn.data(), '\0', bind.spawn.size()) != nullptr);
    require(bind.act == ACT_SPAWN || bind.spawn[0] == '\0');
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const vantore_server server;
    g_config_errors = 0;
    install_default_binds(server);
    config_parse_keybinds(server, write_file(data, size));
    require(g_bind_count >= 0 && g_bind_count <= int(g_binds.size()));
    for (const vnt_bind &bind : std::span{g_binds.data(), size_t(g_bind_count)})
        check(bind);
    require(g_config_errors <= int(std::count(data, data + size, '=')));
    return 0;
}
