// The overview's strip: a thumbnail of each workspace at the left edge of the output.
#pragma once

#include "../fwd.hpp"
#include "overview_canvas.hpp"
#include "overviewing.hpp"

// Draws the thumbnails of the workspaces that the output shows or would show, and of an empty one to drag
// windows onto. Returns them. There is none on an output without a size.
std::vector<overview_workspace> overview_add_strip(vantore_server &server, const overview_canvas &canvas,
                                                   const vantore_output &o);

// Whether the workspace has a window that is not minimized.
bool overview_ws_has_windows(vantore_server &server, const vantore_workspace &ws);
