#include "switcher.hpp"

#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/focus.hpp"
#include "../workspaces/workspace.hpp"
#include "keyboard.hpp"
#include "switcher_boxes.hpp"
#include "switcher_display.hpp"

#include <algorithm>

static constexpr size_t most_items = 64;
static constexpr uint32_t holding_modifiers = WLR_MODIFIER_CTRL | WLR_MODIFIER_ALT | WLR_MODIFIER_LOGO;

// `only` is null for the windows of all workspaces on show.
static bool is_listed(const vantore_toplevel &t, const vantore_workspace *only)
{
    const wlr_surface *surface = tl_surface(t);
    if (surface == nullptr || !surface->mapped || t.workspace == nullptr)
        return false;
    return only != nullptr ? t.workspace == only : t.workspace->output != nullptr;
}

static std::vector<vantore_toplevel *> windows_to_list(vantore_server &server, const vantore_workspace *only)
{
    std::vector<vantore_toplevel *> windows;
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (windows.size() < most_items && is_listed(t, only))
            windows.push_back(&t);
    return windows;
}

static bool modifiers_are_held(vantore_server &server)
{
    const uint32_t wanted = server.switching.sw_mod;
    for (const auto &k : each<&vantore_keyboard::link>(server.keyboards))
        if ((wlr_keyboard_get_modifiers(k.wlr_keyboard) & wanted) == wanted)
            return true;
    return false;
}

static bool open_switcher(vantore_server &server, uint32_t mods)
{
    vantore_switching &s = server.switching;
    s.sw_thumbs = (mods & WLR_MODIFIER_ALT) != 0 && (mods & WLR_MODIFIER_LOGO) == 0;
    const vantore_output *o = current_output(server);
    s.sw_items = windows_to_list(server, s.sw_thumbs && o != nullptr ? o->current_ws : nullptr);
    if (s.sw_items.size() < 2) {
        s.sw_items.clear();
        return false;
    }
    s.sw_active = true;
    s.sw_index = 0;
    s.sw_mod = mods & holding_modifiers;
    if (s.sw_mod == 0)
        s.sw_mod = WLR_MODIFIER_ALT;
    s.sw_mod_seen = modifiers_are_held(server);
    return true;
}

void switcher_step(vantore_server &server, uint32_t mods)
{
    vantore_switching &s = server.switching;
    if (!s.sw_active && !open_switcher(server, mods))
        return;
    const int count = int(s.sw_items.size()), step = (mods & WLR_MODIFIER_SHIFT) != 0 ? -1 : 1;
    s.sw_index = (s.sw_index + step + count) % count;
    switcher_show(server);
}

void switcher_commit(vantore_server &server, bool cancel)
{
    vantore_switching &s = server.switching;
    if (!s.sw_active)
        return;
    vantore_toplevel *selected = s.sw_items[size_t(s.sw_index)];
    s.sw_active = false;
    s.sw_items.clear();
    switcher_hide(s);
    // The workspace may have left its output since the switcher opened, and nobody would see the window.
    if (!cancel && output_showing(*selected) != nullptr)
        focus_toplevel_ex(selected, true);
}

struct modifier_keys {
    uint32_t modifier;
    xkb_keysym_t left, right;
};

static constexpr modifier_keys keys_of_modifiers[]{
    {WLR_MODIFIER_ALT, XKB_KEY_Alt_L, XKB_KEY_Alt_R},
    {WLR_MODIFIER_LOGO, XKB_KEY_Super_L, XKB_KEY_Super_R},
    {WLR_MODIFIER_CTRL, XKB_KEY_Control_L, XKB_KEY_Control_R},
};

bool switcher_is_held_by(const vantore_server &server, xkb_keysym_t sym)
{
    const vantore_switching &s = server.switching;
    return s.sw_active && std::ranges::any_of(keys_of_modifiers, [&](const modifier_keys &keys) {
               return (s.sw_mod & keys.modifier) != 0 && (sym == keys.left || sym == keys.right);
           });
}

void switcher_follow_modifiers(vantore_server &server)
{
    vantore_switching &s = server.switching;
    if (!s.sw_active)
        return;
    const bool held = modifiers_are_held(server);
    if (s.sw_mod_seen && !held)
        return switcher_commit(server, false);
    s.sw_mod_seen = held;
}

void switcher_cancel(vantore_server &server)
{
    switcher_commit(server, true);
}

// Cancels for windows that are not listed too: when such a window goes, other windows may come into sight.
void switcher_window_leaves(vantore_server &server, const vantore_toplevel &)
{
    switcher_cancel(server);
}

void switcher_output_leaves(vantore_server &server, const wlr_output *)
{
    switcher_cancel(server);
}
