// The one layout function.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Lays a workspace's windows out. Idempotent: it works out everything again from the order of the windows,
// the layout and the weights. Null does nothing; on a workspace that is on no output only what shows is
// decided: the rest catches up when it is shown.
void arrange_workspace(vantore_workspace *ws);

// Gives a window the box of a tile in layout coordinates, its title bar included, and tells the client.
void tile_place(vantore_toplevel &t, const wlr_box &box);
