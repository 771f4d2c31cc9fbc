#include "words.hpp"

#include "../wlr.hpp"
#include "files.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <strings.h>

static constexpr int longest_render_time_ms = 100;
static constexpr size_t color_digits = 6;

uint32_t cfg_modifier(const char *v)
{
    if (strcasecmp(v, "alt") == 0)
        return WLR_MODIFIER_ALT;
    if (strcasecmp(v, "ctrl") == 0 || strcasecmp(v, "control") == 0)
        return WLR_MODIFIER_CTRL;
    return WLR_MODIFIER_LOGO;
}

vantore_layout cfg_layout(const char *v)
{
    const bool tiling = strcasecmp(v, "tiling") == 0 || strcasecmp(v, "tile") == 0;
    return tiling ? VANTORE_LAYOUT_TILING : VANTORE_LAYOUT_FLOATING;
}

wp_mode wp_mode_str(const char *v)
{
    const std::string_view text{v};
    if (text == "fit")
        return WP_FIT;
    if (text == "stretch")
        return WP_STRETCH;
    return text == "center" ? WP_CENTER : WP_FILL;
}

int cfg_max_render_time(const char *v)
{
    const std::string_view text{v};
    if (text == "auto")
        return -1;
    if (text == "off" || text == "false")
        return 0;
    return std::clamp(cfg_int(v), 0, longest_render_time_ms);
}

static float channel(unsigned bits, int shift)
{
    return float(bits >> shift & 0xff) / 255.0F;
}

bool cfg_color(const char *v, std::array<float, 4> &color)
{
    const char *digits = *v == '#' ? v + 1 : v;
    unsigned bits = 0;
    if (strlen(digits) != color_digits || sscanf(digits, "%6x", &bits) != 1)
        return false;
    color = {channel(bits, 16), channel(bits, 8), channel(bits, 0), 1};
    return true;
}
