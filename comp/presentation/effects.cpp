#include "effects.hpp"

#include "../config/settings.hpp"
#include "../graphics.hpp"

bool fx_on()
{
    return !g_safe_graphics && (!g_soft_render || g_force_effects);
}
