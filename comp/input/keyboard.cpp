// Every key of every keyboard passes through the stages below in their order, until one of them takes it. The
// stages do not remember which presses they took, so a client may hear of a release without its press.

#include "keyboard.hpp"

#include "../config/settings.hpp"
#include "../platform.hpp"
#include "../server.hpp"
#include "actions.hpp"
#include "idle.hpp"
#include "input_method.hpp"
#include "keymap.hpp"
#include "modifier_tap.hpp"
#include "overview_input.hpp"
#include "stages.hpp"
#include "switcher.hpp"

#include <algorithm>
#include <span>

static constexpr uint32_t xkb_keycode_offset = 8; // X11 keycodes are evdev codes plus this offset
static constexpr xkb_keysym_t first_vt_keysym = XKB_KEY_XF86Switch_VT_1;
static constexpr xkb_keysym_t last_vt_keysym = XKB_KEY_XF86Switch_VT_12;

struct key_event {
    vantore_server &server;
    wlr_keyboard *keyboard;
    const wlr_keyboard_key_event &raw;
    bool pressed;
    uint32_t modifiers; // of wlr_keyboard_modifier
    // What the key means in its layout without Shift or AltGr. The keymap owns the symbols.
    std::span<const xkb_keysym_t> base_syms;
};

static xkb_keysym_t first_sym(const key_event &key)
{
    return key.base_syms.empty() ? XKB_KEY_NoSymbol : key.base_syms.front();
}

// A keyboard whose layout never compiled has neither keymap nor state.
static std::span<const xkb_keysym_t> base_syms(const wlr_keyboard *keyboard, xkb_keycode_t keycode)
{
    if (keyboard->xkb_state == nullptr)
        return {};
    const xkb_layout_index_t layout = xkb_state_key_get_layout(keyboard->xkb_state, keycode);
    if (layout == XKB_LAYOUT_INVALID)
        return {};
    const xkb_keysym_t *syms = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(keyboard->keymap, keycode, layout, 0, &syms);
    return {syms, size_t(std::max(count, 0))};
}

static std::span<const xkb_keysym_t> translated_syms(const wlr_keyboard *keyboard, xkb_keycode_t keycode)
{
    if (keyboard->xkb_state == nullptr)
        return {};
    const xkb_keysym_t *syms = nullptr;
    const int count = xkb_state_key_get_syms(keyboard->xkb_state, keycode, &syms);
    return {syms, size_t(std::max(count, 0))};
}

static void notify_client(const key_event &key)
{
    wlr_seat_set_keyboard(key.server.seat, key.keyboard);
    wlr_seat_keyboard_notify_key(key.server.seat, key.raw.time_msec, key.raw.keycode, key.raw.state);
}

// The overview takes every key.
static bool give_to_overview(const key_event &key)
{
    vantore_overviewing &overview = key.server.overview;
    if (!overview.active)
        return false;
    if (!key.pressed)
        overview.swallowed_release = true;
    else if (!key.base_syms.empty())
        overview_key(key.server, first_sym(key));
    return true;
}

static bool switch_vt(const key_event &key)
{
    if (key.server.session == nullptr || !key.pressed)
        return false;
    for (const xkb_keysym_t sym : translated_syms(key.keyboard, key.raw.keycode + xkb_keycode_offset)) {
        if (sym < first_vt_keysym || sym > last_vt_keysym)
            continue;
        g_platform.change_vt(key.server.session, sym - first_vt_keysym + 1);
        return true;
    }
    return false;
}

// No binding runs while the session is locked, and no input method reads the password.
static bool give_to_lock_client(const key_event &key)
{
    if (!key.server.locked)
        return false;
    notify_client(key);
    return true;
}

// A client does not hear of the release that ends the switcher.
static bool give_to_switcher(const key_event &key)
{
    const xkb_keysym_t sym = first_sym(key);
    const bool cancels = key.pressed && sym == XKB_KEY_Escape && key.server.switching.sw_active;
    const bool commits = !key.pressed && switcher_is_held_by(key.server, sym);
    if (cancels || commits)
        switcher_commit(key.server, cancels);
    return cancels || commits;
}

static bool watch_modifier_tap(const key_event &key)
{
    if (key.pressed)
        modifier_tap_press(key.server, first_sym(key));
    else
        modifier_tap_release(key.server, first_sym(key));
    return false;
}

static bool run_bindings(const key_event &key)
{
    if (!key.pressed || key.base_syms.empty())
        return false;
    // An action may give the keyboard another keymap, and base_syms lies in this one.
    const handle<xkb_keymap, xkb_keymap_unref> kept{xkb_keymap_ref(key.keyboard->keymap)};
    bool taken = false;
    for (const xkb_keysym_t sym : key.base_syms)
        taken |= handle_keybinding(key.server, key.modifiers, sym);
    return taken;
}

static bool give_to_input_method(const key_event &key)
{
    wlr_input_method_keyboard_grab_v2 *grab = input_method_grab(key.server);
    if (grab == nullptr)
        return false;
    wlr_input_method_keyboard_grab_v2_set_keyboard(grab, key.keyboard);
    wlr_input_method_keyboard_grab_v2_send_key(grab, key.raw.time_msec, key.raw.keycode, key.raw.state);
    return true;
}

static bool give_to_client(const key_event &key)
{
    notify_client(key);
    return true;
}

using key_stages = stages<give_to_overview, switch_vt, give_to_lock_client, give_to_switcher,
                          watch_modifier_tap, run_bindings, give_to_input_method, give_to_client>;

static void keyboard_handle_key(vantore_keyboard &k, wlr_keyboard_key_event *event)
{
    idle_poke(*k.server);
    const key_event key{.server = *k.server,
                        .keyboard = k.wlr_keyboard,
                        .raw = *event,
                        .pressed = event->state == WL_KEYBOARD_KEY_STATE_PRESSED,
                        .modifiers = wlr_keyboard_get_modifiers(k.wlr_keyboard),
                        .base_syms = base_syms(k.wlr_keyboard, event->keycode + xkb_keycode_offset)};
    key_stages::run(key);
}

static void keyboard_handle_modifiers(vantore_keyboard &k)
{
    vantore_server &server = *k.server;
    switcher_follow_modifiers(server);
    if (wlr_input_method_keyboard_grab_v2 *grab = input_method_grab(server)) {
        wlr_input_method_keyboard_grab_v2_set_keyboard(grab, k.wlr_keyboard);
        wlr_input_method_keyboard_grab_v2_send_modifiers(grab, &k.wlr_keyboard->modifiers);
        return;
    }
    wlr_seat_set_keyboard(server.seat, k.wlr_keyboard);
    wlr_seat_keyboard_notify_modifiers(server.seat, &k.wlr_keyboard->modifiers);
}

static bool is_virtual(const vantore_keyboard &k)
{
    return wlr_input_device_get_virtual_keyboard(&k.wlr_keyboard->base) != nullptr;
}

// A virtual keyboard without a keymap sends keys that no client can understand.
static bool is_usable(const vantore_keyboard &k)
{
    return !is_virtual(k) || k.wlr_keyboard->keymap != nullptr;
}

// Prefers real keyboards. Returns null when there is no usable keyboard.
static wlr_keyboard *best_keyboard(vantore_server &server)
{
    wlr_keyboard *best = nullptr;
    for (auto &k : each<&vantore_keyboard::link>(server.keyboards)) {
        if (!is_virtual(k))
            return k.wlr_keyboard;
        if (best == nullptr && is_usable(k))
            best = k.wlr_keyboard;
    }
    return best;
}

static void keyboard_handle_destroy(vantore_keyboard &k)
{
    vantore_server &server = *k.server;
    const wlr_keyboard *destroyed = k.wlr_keyboard;
    delete &k;
    switcher_follow_modifiers(server);
    const wlr_keyboard *current = wlr_seat_get_keyboard(server.seat);
    if (current != nullptr && current != destroyed)
        return;
    if (wlr_keyboard *next = best_keyboard(server))
        wlr_seat_set_keyboard(server.seat, next);
}

static void keyboard_handle_first_keymap(vantore_keyboard &k)
{
    unlisten(k.keymap);
    wlr_seat_set_keyboard(k.server->seat, k.wlr_keyboard);
}

void server_new_keyboard(vantore_server &server, wlr_input_device *device)
{
    auto *k = new vantore_keyboard{};
    k->server = &server;
    k->wlr_keyboard = wlr_keyboard_from_input_device(device);
    if (!is_virtual(*k)) // virtual keyboards bring a keymap of their own
        keyboard_apply_layout(k->wlr_keyboard);
    wlr_keyboard_set_repeat_info(k->wlr_keyboard, g_kb_repeat_rate, g_kb_repeat_delay);
    listen<&vantore_keyboard::modifiers, keyboard_handle_modifiers>(*k, k->wlr_keyboard->events.modifiers);
    listen<&vantore_keyboard::key, keyboard_handle_key>(*k, k->wlr_keyboard->events.key);
    listen<&vantore_keyboard::destroy, keyboard_handle_destroy>(*k, device->events.destroy);
    if (is_usable(*k))
        wlr_seat_set_keyboard(server.seat, k->wlr_keyboard);
    else
        listen<&vantore_keyboard::keymap, keyboard_handle_first_keymap>(*k, k->wlr_keyboard->events.keymap);
    wl_list_insert(&server.keyboards, &k->link);
}
