// The one layout function.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Lays out a workspace's windows. Idempotent: it computes everything again from the order of the windows, the
// layout and the weights. Does nothing for null. On a workspace that is on no output, it only decides which
// windows show. The workspace is laid out when an output shows it.
void arrange_workspace(vantore_workspace *ws);

// Gives a window the box of a tile in layout coordinates, its title bar included, and tells the client.
void tile_place(vantore_toplevel &t, const wlr_box &box);
