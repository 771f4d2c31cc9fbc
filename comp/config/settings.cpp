#include "settings.hpp"

// 4cbf73
static constexpr std::array default_accent{76 / 255.0F, 191 / 255.0F, 115 / 255.0F, 1.0F};

void config_load()
{
    g_vrr = false;
    g_presentation_time = true;
    g_animations = true;
    g_force_effects = false;
    g_default_layout = VANTORE_LAYOUT_FLOATING;
    g_default_master = 0.55;
    g_accent_set = true;
    g_accent = default_accent;
}
