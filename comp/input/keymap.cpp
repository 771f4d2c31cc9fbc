#include "keymap.hpp"

#include "../config/settings.hpp"
#include "../handles.hpp"

#include <utility>

using xkb_context_handle = handle<xkb_context, xkb_context_unref>;
using xkb_keymap_handle = handle<xkb_keymap, xkb_keymap_unref>;

struct layout_names {
    decltype(g_kb_layout) layout{};
    decltype(g_kb_variant) variant{};
    decltype(g_kb_options) options{};
    friend bool operator==(const layout_names &, const layout_names &) = default;
};

// All real keyboards share this keymap, so a change from one to another tells clients nothing new.
static xkb_keymap_handle g_keymap;
static layout_names g_keymap_names; // what g_keymap was made from
static bool g_keymap_expired;

static const char *or_null(const char *text)
{
    return *text != '\0' ? text : nullptr;
}

static xkb_keymap_handle compile_layout(xkb_context *context)
{
    // A variant and options mean nothing without a layout.
    if (g_kb_layout[0] == '\0')
        return xkb_keymap_handle{xkb_keymap_new_from_names(context, nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS)};
    const xkb_rule_names names{
        .rules = nullptr,
        .model = nullptr,
        .layout = g_kb_layout.data(),
        .variant = or_null(g_kb_variant.data()),
        .options = or_null(g_kb_options.data()),
    };
    return xkb_keymap_handle{xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS)};
}

void keymap_expire()
{
    g_keymap_expired = true;
}

// Returns null if the layout does not compile. An equal keymap does not replace the one that is in use.
static xkb_keymap *configured_keymap()
{
    const layout_names names{.layout = g_kb_layout, .variant = g_kb_variant, .options = g_kb_options};
    if (g_keymap != nullptr && !g_keymap_expired && names == g_keymap_names)
        return g_keymap.get();
    const xkb_context_handle context{xkb_context_new(XKB_CONTEXT_NO_FLAGS)};
    xkb_keymap_handle keymap = context != nullptr ? compile_layout(context.get()) : nullptr;
    if (keymap == nullptr)
        return nullptr;
    if (g_keymap == nullptr || !wlr_keyboard_keymaps_match(keymap.get(), g_keymap.get()))
        g_keymap = std::move(keymap);
    g_keymap_names = names;
    g_keymap_expired = false;
    return g_keymap.get();
}

static bool has_keymap(const wlr_keyboard &keyboard, xkb_keymap *keymap)
{
    return keyboard.keymap == keymap ||
           (keyboard.keymap != nullptr && wlr_keyboard_keymaps_match(keyboard.keymap, keymap));
}

void keyboard_apply_layout(wlr_keyboard *keyboard)
{
    xkb_keymap *keymap = configured_keymap();
    if (keymap == nullptr)
        wlr_log(WLR_ERROR, "vantore-comp: keyboard layout '%s' failed to compile — keeping the current one",
                g_kb_layout.data());
    else if (!has_keymap(*keyboard, keymap))
        wlr_keyboard_set_keymap(keyboard, keymap);
}
