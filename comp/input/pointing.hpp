// What the compositor remembers between two pointer events, as data.
#pragma once

#include "../fwd.hpp"

#include <cstdint>

struct vantore_pointing {
    // The pointer's offset from the surface, at the last motion that a client heard of.
    double ptr_grab_ox = 0, ptr_grab_oy = 0;
    // The position at which focus follows mouse last settled.
    double ffm_anchor_x = 0, ffm_anchor_y = 0;
    // The window whose title bar is under the pointer. Null for none, otherwise mapped.
    vantore_toplevel *hovered_toplevel = nullptr;
    // The last press on a title bar, for double clicks.
    uint32_t last_tb_msec = 0;
    uint32_t last_tb_id = 0; // the id of its window; 0 for none
};
