#include "keymap.hpp"

#include "../config/settings.hpp"
#include "../handles.hpp"

using xkb_context_handle = handle<xkb_context, xkb_context_unref>;
using xkb_keymap_handle = handle<xkb_keymap, xkb_keymap_unref>;

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

void keyboard_apply_layout(wlr_keyboard *keyboard)
{
    const xkb_context_handle context{xkb_context_new(XKB_CONTEXT_NO_FLAGS)};
    const xkb_keymap_handle keymap = context != nullptr ? compile_layout(context.get()) : nullptr;
    if (keymap != nullptr)
        wlr_keyboard_set_keymap(keyboard, keymap.get());
    else
        wlr_log(WLR_ERROR, "vantore-comp: keyboard layout '%s' failed to compile — keeping the current one",
                g_kb_layout.data());
}
