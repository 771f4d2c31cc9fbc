// Effects that the GPU pays for.
#pragma once

#include "../wlr.hpp"

// Whether there may be any: not with safe graphics, nor under software rendering unless the settings force
// them.
bool fx_on();

// Whether what is translucent blurs what lies behind it.
bool fx_blurs();

// Blurs, or no longer blurs, what lies behind every buffer that hangs below the node now.
void effects_set_blur_tree(wlr_scene_node *node, bool on);
