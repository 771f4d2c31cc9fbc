// Decides what the end of a drag does with the window.
#pragma once

#include "../fwd.hpp"
#include "drag_zones.hpp"

// Where a dragged tile would land.
struct drop_target {
    vantore_toplevel *tile = nullptr; // null where there is none
    drop_zone zone = DROP_SWAP; // of that tile
};

// The point is in layout coordinates. The tile may be on another workspace if the point is on its tabs.
drop_target drop_target_at(const vantore_toplevel &dragged, double x, double y);

// Ends the drag after its button was released. A window that was moved lands where it was dropped. Does
// nothing without a drag.
void finish_drag(vantore_server &server);
