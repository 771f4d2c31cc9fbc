// Draws the overview.
#pragma once

#include "../fwd.hpp"
#include "overviewing.hpp"

// Makes the nodes and the items for the workspace that the output shows. The record must be empty, and stays
// without a tree when the scene has no memory.
void overview_draw(vantore_server &server, vantore_output &o);

// Shows the ring with a margin of this width around the box, and hides it for null. Does nothing without a
// ring.
void overview_ring_show(vantore_overviewing &overview, const wlr_box *around, int margin);
