// The Mouse Tiler: a display that appears while the user drags a floating window. A window that is dropped on
// a zone takes that part of the screen. A window that is dropped on a workspace tile moves to that workspace.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Shows the display on the output under the pointer, with nothing picked.
void mt_show(vantore_server &server);
// Call this after the pointer moved. Picks what lies under it and previews where the window would land.
void mt_update(vantore_server &server);
void mt_hide(vantore_server &server);
void mt_output_leaves(vantore_server &server, const wlr_output *output);

// Carries out a drop on a zone or on a workspace tile. Both are indices, -1 for none. Returns false when
// nothing was picked or the workspace does not exist. The window then stays where it was dropped.
bool mt_apply(vantore_server &server, vantore_toplevel &t, int zone, int wsq);
