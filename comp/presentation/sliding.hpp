// Two workspaces that move across the output, one out and one in, as data.
#pragma once

#include "../fwd.hpp"

#include <cstdint>

struct vantore_sliding {
    bool active = false;
    vantore_workspace *from = nullptr, *to = nullptr; // workspaces live as long as the session
    int64_t t0 = 0; // of mono_ms
    int dir = 0; // 1 when they move to the left, -1 when they move to the right
    int width = 0; // of the way, in layout pixels
};
