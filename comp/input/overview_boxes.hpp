// Computes where the parts of the overview go. All boxes are in layout coordinates.
#pragma once

#include "../wlr.hpp"

#include <optional>
#include <span>

inline constexpr int overview_title_height = 26, overview_badge = 22, overview_name_height = 20;

// The cells of the windows' tiles, row by row.
struct overview_grid {
    int count, columns;
    wlr_box first; // the cell at the left of the first row
    int picture_height; // what the title leaves of a cell
};

overview_grid overview_grid_in(const wlr_box &area, int count);
// The cells of a last row that is not full are centred.
wlr_box overview_cell(const overview_grid &grid, int index);
// Returns the place of a picture of a window of this size, in the middle of its cell. It is never larger than
// the window, nor than about two thirds of the screen.
wlr_box overview_tile(const overview_grid &grid, int index, const wlr_box &window, const wlr_box &screen);
// Returns the badge that closes the window, in the tile's upper right corner.
wlr_box overview_close_badge(const wlr_box &tile);

// The column of the workspaces' thumbnails.
struct overview_strip {
    wlr_box first; // the upper thumbnail
    int step; // from one thumbnail's top to the next one's
    double scale; // of the thumbnails against the screen
};

// `named` makes room for a name below each thumbnail. `count` is at least 1, and the screen is not empty.
overview_strip overview_strip_in(const wlr_box &area, const wlr_box &screen, int count, bool named);
wlr_box overview_thumbnail(const overview_strip &strip, int index);
// Returns a window's place in a thumbnail, relative to the thumbnail's corner. Nothing if it lies outside.
std::optional<wlr_box> overview_sketch(const overview_strip &strip, const wlr_box &window,
                                       const wlr_box &screen);
// Returns what the strip leaves of the area.
wlr_box overview_beside_strip(const wlr_box &area);

// Returns the box with a margin of this width around it.
wlr_box overview_around(const wlr_box &box, int margin);

// Returns the tile that a step to the left (dx below 0), right, up (dy below 0) or down selects. The selected
// one if there is none in that direction.
int overview_neighbour(std::span<const wlr_box> tiles, int selected, int dx, int dy);

// Returns the box of a tile that is dragged with the pointer at this point.
wlr_box overview_dragged(const wlr_box &tile, double lx, double ly);

// Returns the box on the way from one to another, where `part` runs from 0 to 1.
wlr_box overview_between(const wlr_box &from, const wlr_box &to, double part);
