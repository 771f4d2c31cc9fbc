// Effects that cost GPU time.
#pragma once

#include "../wlr.hpp"

// Whether effects are allowed. Safe graphics forbid them. Software rendering forbids them unless the settings
// force them.
bool fx_on();

// Whether translucent parts blur what lies behind them.
bool fx_blurs();

// Turns the blur on or off behind every buffer that hangs below the node now.
void effects_set_blur_tree(wlr_scene_node *node, bool on);
