#include "settings.hpp"

#include "../text.hpp"

// 4cbf73
static constexpr std::array default_accent{76 / 255.0F, 191 / 255.0F, 115 / 255.0F, 1.0F};

void config_load()
{
    g_vrr = false;
    g_presentation_time = true;
    g_animations = true;
    g_force_effects = false;
    copy_text(g_kb_layout, "");
    copy_text(g_kb_variant, "");
    copy_text(g_kb_options, "");
    g_tap_to_click = true;
    g_tp_nat_scroll = true;
    g_nat_scroll = false;
    g_accel_flat = false;
    g_left_handed = false;
    g_tablet_left_handed = false;
    g_tp_accel = 0;
    g_pointer_accel = 0;
    copy_text(g_touch_output, "");
    g_default_layout = VANTORE_LAYOUT_FLOATING;
    g_default_master = 0.55;
    g_accent_set = true;
    g_accent = default_accent;
}
