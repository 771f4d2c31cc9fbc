// The colours of what the compositor draws: red, green, blue, alpha, not premultiplied.
#pragma once

#include "../color.hpp"

inline color g_tb_unfocus, g_tb_focus; // title bars without and with the focus
inline color g_tb_fg; // text on title bars
inline color g_shadow_color;

// Computes these colours from the theme and the accent in the settings.
void recompute_titlebar_colors();
