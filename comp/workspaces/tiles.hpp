// Which windows are tiles, and finding them.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// The window takes a tile, alone or with the others of its stack: it is mapped, its workspace is tiling, and
// it neither floats nor is minimized or fullscreen.
bool tile_participates(const vantore_toplevel &t);

// The workspace is tiling and the window does not float; minimized and fullscreen ones count.
bool toplevel_is_tiled(const vantore_toplevel &t);

// The number of tiles before the window on its workspace, where each member of a stack counts; -1 for a
// window that is no tile. 0 is the master.
int tile_index(vantore_toplevel &t);

// What the window covers, its title bar or tabs included, in layout coordinates.
wlr_box tile_frame(const vantore_toplevel &t);

// The tile other than `except` whose box, title bar or tabs included, contains the point in layout
// coordinates; null when there is none or no workspace.
vantore_toplevel *tile_at(vantore_workspace *ws, double lx, double ly, const vantore_toplevel *except);
