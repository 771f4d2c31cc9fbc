// What the compositor remembers between two pointer events, as data.
#pragma once

#include "../fwd.hpp"
#include "../records.hpp"
#include "../wlr.hpp"

#include <cstdint>

struct vantore_pointing {
    // The pointer's offset from the surface, at the last motion that a client heard of.
    double ptr_grab_ox = 0, ptr_grab_oy = 0;
    // The position at which focus follows mouse last settled.
    double ffm_anchor_x = 0, ffm_anchor_y = 0;
    // The window that the pointer was last seen over, by its id; 0 for none. Only for focus that follows the
    // mouse.
    uint32_t ffm_window_id = 0;
    wl_event_source *look_again = nullptr; // the idle source that looks up a resting pointer; null for none
    listener drag_destroy; // while a client's drag and drop is under way
    // The window whose title bar is under the pointer. Null for none, otherwise mapped.
    vantore_toplevel *hovered_toplevel = nullptr;
    // The last press on a title bar, for double clicks.
    uint32_t last_tb_msec = 0;
    uint32_t last_tb_id = 0; // the id of its window; 0 for none
};
