// Values that are one word of several, as configuration files spell them.
#pragma once

#include "settings.hpp"

#include <cstdint>

// WLR_MODIFIER_ALT or WLR_MODIFIER_CTRL in any case; WLR_MODIFIER_LOGO for every other text.
uint32_t cfg_modifier(const char *v);

// Tiling in any case; floating for every other text.
vantore_layout cfg_layout(const char *v);

// Filling for every text that is no mode.
wp_mode wp_mode_str(const char *v);

// "auto" is -1, "off" and "false" are 0; else milliseconds from 0 to 100.
int cfg_max_render_time(const char *v);

// Six characters that begin with a hexadecimal number, with or without a '#' before them. False for anything
// else, which leaves the colour as it was.
bool cfg_color(const char *v, std::array<float, 4> &color);
