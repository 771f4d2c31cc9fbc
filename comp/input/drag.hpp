// A drag of a window with the pointer, as data. Without a drag, cursor_mode is VANTORE_CURSOR_PASSTHROUGH and
// grabbed_toplevel is null.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"
#include "cursor_mode.hpp"

struct vantore_drag {
    vantore_cursor_mode cursor_mode = VANTORE_CURSOR_PASSTHROUGH;
    vantore_toplevel *grabbed_toplevel = nullptr; // mapped
    // The pointer's offset from the dragged window, or from the border that moves.
    double grab_x = 0, grab_y = 0;
    double grab_start_x = 0, grab_start_y = 0; // the pointer at the start of a move
    wlr_box grab_geobox{}; // window geometry at the start of a resize, layout coordinates
    uint32_t resize_edges = 0; // of wlr_edges
};
