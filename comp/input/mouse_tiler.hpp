// The Mouse Tiler: a display that comes up while a floating window is dragged. Dropped on one of its zones
// the window takes that part of the screen, dropped on a workspace tile it goes there.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Shows the display on the output under the pointer, with nothing picked.
void mt_show(vantore_server &server);
// The pointer has moved while it shows: picks what is under it and shows where the window would land.
void mt_update(vantore_server &server);
void mt_hide(vantore_server &server);
void mt_output_leaves(vantore_server &server, const wlr_output *output);

// Carries out a drop; zone and workspace tile are indices, -1 for none. False when nothing was picked: then
// the window stays where it was dropped.
bool mt_apply(vantore_server &server, vantore_toplevel &t, int zone, int wsq);
