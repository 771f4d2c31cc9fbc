// The table of steps near the end is the reload. Other programs may rely on its order: first the settings,
// then what depends on them, then the announcement.

#include "reload.hpp"

#include "broadcast.hpp"
#include "config/files.hpp"
#include "config/load.hpp"
#include "config/settings.hpp"
#include "input/cursor_image.hpp"
#include "input/devices.hpp"
#include "input/keyboard.hpp"
#include "input/keymap.hpp"
#include "input/libinput_settings.hpp"
#include "notify.hpp"
#include "outputs/wallpaper.hpp"
#include "presentation/decorations.hpp"
#include "server.hpp"
#include "visibility.hpp"
#include "windows/app_rules.hpp"
#include "windows/toplevel.hpp"
#include "windows/xwayland.hpp"
#include "workspaces/arrange.hpp"
#include "workspaces/stacks.hpp"
#include "workspaces/workspace.hpp"

#include <csignal>

static void reload_keyboards(vantore_server &server)
{
    keymap_expire();
    for (auto &k : each<&vantore_keyboard::link>(server.keyboards)) {
        keyboard_apply_layout(k.wlr_keyboard);
        wlr_keyboard_set_repeat_info(k.wlr_keyboard, g_kb_repeat_rate, g_kb_repeat_delay);
    }
}

static void reload_devices(vantore_server &server)
{
    for (auto &dev : each<&vantore_input_dev::link>(server.input_devs))
        apply_libinput_settings(dev.device);
}

// Takes all windows out of their stacks. Only a workspace that tiles has stacks.
static void dissolve_stacks(vantore_workspace &ws)
{
    for (auto &t : each<&vantore_toplevel::ws_link>(ws.toplevels))
        if (t.stack_id != 0)
            stack_leave(t);
}

static void reload_workspaces(vantore_server &server)
{
    config_apply_workspaces(server);
    for (auto &ws : each<&vantore_workspace::link>(server.workspaces)) {
        if (ws.layout != VANTORE_LAYOUT_TILING)
            dissolve_stacks(ws);
        arrange_workspace(&ws);
    }
}

static void reload_rules(vantore_server &server)
{
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
        config_refresh_rules(t);
}

static void announce(vantore_server &server)
{
    ipc_broadcast(server, VNT_EVT_WORKSPACES);
    ipc_broadcast(server, VNT_EVT_RELOADED);
}

static void report_bad_lines(vantore_server &)
{
    if (g_config_errors <= 0) {
        wlr_log(WLR_INFO, "vantore-comp: config reloaded");
        return;
    }
    std::array<char, 160> text{};
    snprintf(text.data(), text.size(),
             "Reloaded with %d issue(s) — check ~/.config/vantore (bad lines ignored)", g_config_errors);
    wlr_log(WLR_INFO, "vantore-comp: %s", text.data());
    config_notify(text.data());
}

static constexpr void (*steps[])(vantore_server &) = {
    config_load,         cursor_apply,      apply_x_primary,   reload_keyboards, reload_devices,
    apply_touch_mapping, reload_workspaces, wallpapers_reload, reload_rules,     recolor_all_decorations,
    visible_changed,     announce,          report_bad_lines,
};

void config_reload(vantore_server &server)
{
    for (auto *step : steps)
        step(server);
}

static int handle_sighup(int, void *data)
{
    config_reload(*static_cast<vantore_server *>(data));
    return 0;
}

void config_reload_on_hangup(vantore_server &server)
{
    wl_event_loop *loop = wl_display_get_event_loop(server.display);
    server.hangup.reset(wl_event_loop_add_signal(loop, SIGHUP, handle_sighup, &server));
    if (server.hangup == nullptr)
        wlr_log(WLR_ERROR, "vantore-comp: can't watch for SIGHUP; only the key binding reloads");
}

void config_ignore_hangup(vantore_server &server)
{
    server.hangup.reset();
}
