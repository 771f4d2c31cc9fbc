// Two workspaces that move across the output, one out and one in, as data.
#pragma once

#include "../wlr.hpp"

struct vantore_sliding {
    wlr_scene_tree *from = nullptr, *to = nullptr; // of the workspaces; null while nothing slides
    int64_t t0 = 0; // of mono_ms
    int dir = 0; // 1 when they move to the left, -1 when they move to the right
    int width = 0; // of the way, in layout pixels
};
