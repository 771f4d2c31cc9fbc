// Which windows are tiles, and finding them.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Whether the window takes a tile, alone or with the others of its stack. It is then mapped, its workspace is
// tiling, and it is neither floating, minimized nor fullscreen.
bool tile_participates(const vantore_toplevel &t);

// Whether the workspace is tiling and the window does not float. It may be minimized or fullscreen.
bool toplevel_is_tiled(const vantore_toplevel &t);

// Returns the number of tiles before the window on its workspace, counting each member of a stack. 0 is the
// master. Returns -1 for a window that is no tile.
int tile_index(vantore_toplevel &t);

// Returns the box that the window covers, its title bar or tabs included, in layout coordinates.
wlr_box tile_frame(const vantore_toplevel &t);

// Returns the visible tile other than `except` that contains the point, its title bar or tabs included. The
// point is in layout coordinates. Null without such a tile or without a workspace.
vantore_toplevel *tile_at(vantore_workspace *ws, double lx, double ly, const vantore_toplevel *except);
