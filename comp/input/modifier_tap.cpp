#include "modifier_tap.hpp"

#include "../broadcast.hpp"
#include "../server.hpp"
#include "../windows/fullscreen.hpp"

static constexpr int hold_ms = 1500;

static bool is_wm_mod_key(const vantore_server &server, xkb_keysym_t sym)
{
    switch (server.wm_modifier) {
    case WLR_MODIFIER_CTRL:
        return sym == XKB_KEY_Control_L || sym == XKB_KEY_Control_R;
    case WLR_MODIFIER_ALT:
        return sym == XKB_KEY_Alt_L || sym == XKB_KEY_Alt_R;
    default:
        return sym == XKB_KEY_Super_L || sym == XKB_KEY_Super_R;
    }
}

static int mod_hold_fired(void *data)
{
    auto &server = *static_cast<vantore_server *>(data);
    if (!server.tap.mod_tapped || server.locked)
        return 0;
    server.tap.shortcuts_shown = true;
    ipc_broadcast(server, VNT_EVT_SHORTCUTS);
    return 0;
}

void modifier_tap_start(vantore_server &server)
{
    server.tap.mod_hold_timer = timer_create(server.display, mod_hold_fired, &server);
}

void modifier_tap_stop(vantore_server &server)
{
    server.tap.mod_hold_timer.reset();
}

static void disarm(vantore_server &server)
{
    server.tap.mod_tapped = false;
    timer_arm(server.tap.mod_hold_timer, 0);
}

static void hide_shortcuts(vantore_server &server)
{
    if (!server.tap.shortcuts_shown)
        return;
    server.tap.shortcuts_shown = false;
    ipc_broadcast(server, VNT_EVT_SHORTCUTS);
}

void modifier_tap_press(vantore_server &server, xkb_keysym_t sym)
{
    if (is_wm_mod_key(server, sym) && !focused_is_fullscreen(server)) {
        server.tap.mod_tapped = true;
        timer_arm(server.tap.mod_hold_timer, hold_ms);
        return;
    }
    disarm(server);
    hide_shortcuts(server);
}

void modifier_tap_release(vantore_server &server, xkb_keysym_t sym)
{
    if (!is_wm_mod_key(server, sym) || !server.tap.mod_tapped)
        return;
    disarm(server);
    if (server.tap.shortcuts_shown)
        hide_shortcuts(server);
    else if (!focused_is_fullscreen(server))
        ipc_broadcast(server, VNT_EVT_LAUNCHER);
}

void shortcuts_force_hide(vantore_server &server)
{
    disarm(server);
    hide_shortcuts(server);
}
