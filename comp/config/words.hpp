// Reads values that are one of several words in configuration files.
#pragma once

#include "settings.hpp"

#include <cstdint>

// Returns WLR_MODIFIER_ALT or WLR_MODIFIER_CTRL for their names in any case, and WLR_MODIFIER_LOGO for every
// other text.
uint32_t cfg_modifier(const char *v);

// Returns tiling for "tiling" or "tile" in any case, and floating for every other text.
vantore_layout cfg_layout(const char *v);

// Returns WP_FILL for a text that names no mode.
wp_mode wp_mode_str(const char *v);

// Returns -1 for "auto", 0 for "off" and "false", and otherwise milliseconds, limited to 0 to 100.
int cfg_max_render_time(const char *v);

// Reads six characters that begin with a hexadecimal number and may follow a '#'. Returns false for any other
// text and leaves the colour as it was.
bool cfg_color(const char *v, std::array<float, 4> &color);
