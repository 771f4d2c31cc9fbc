// Computes where the Mouse Tiler's pads and zones lie. The display is a picture of 606 by 144 pixels.
// Positions are relative to the display unless a comment says otherwise.
#pragma once

#include "../wlr.hpp"

#include <array>
#include <optional>

struct mt_pad_def {
    const char *name;
    int cols, rows; // of the cells that it draws
    bool insert; // dropping on its zone pushes the neighbours aside
    bool maximise; // dropping on its zone maximizes the window
};

struct mt_zone_def {
    int pad;
    int cell_col, cell_row; // from 1
    double fx, fy, fw, fh; // fractions of the usable area
};

extern const std::array<mt_pad_def, 7> MT_PADS;
extern const std::array<mt_zone_def, 15> MT_ZONES;

// An inserted window pushes its neighbours into these outer thirds.
extern const mt_zone_def mt_left_third, mt_right_third;

inline constexpr int mt_hud_width = 606, mt_hud_height = 144;
inline constexpr int mt_workspace_tiles = 9;

// Returns the display's box in layout coordinates.
wlr_box mt_hud_box(const wlr_box &usable, bool top);

// Returns the window's box for a zone, its title bar included, in layout coordinates.
wlr_box mt_zone_landing(const mt_zone_def &zone, const wlr_box &usable, int gap);

// Returns the left edge x of a pad. The pad's zones lie in its canvas, which starts at x + 10, 20 and is 58
// by 38.
double mt_pad_x(int pad);
wlr_fbox mt_zone_shape(const mt_zone_def &zone);
// Returns a cell of the pad's grid, even one without a zone. Column and row count from 1.
wlr_fbox mt_cell_shape(int pad, int col, int row);
bool mt_cell_has_zone(int pad, int col, int row);
// Tile 0 is workspace 1.
wlr_box mt_workspace_tile(int index);

// Returns the box of a window's miniature in a workspace tile, or nothing when it would be too small to draw.
// `window` and `usable` are in layout coordinates.
std::optional<wlr_fbox> mt_miniature(int index, const wlr_box &window, const wlr_box &usable);

// What the pointer picks. At most one of the two is not -1.
struct mt_pick {
    int zone = -1, workspace = -1;
    friend bool operator==(const mt_pick &, const mt_pick &) = default;
};

// The point and the display's box are in layout coordinates.
mt_pick mt_pick_at(const wlr_box &hud, double lx, double ly);
