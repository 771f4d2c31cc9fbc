// The Mouse Tiler's pads and zones, and where they lie: arithmetic only. The display is a picture of 606 by
// 144 pixels; positions in it are its own unless told otherwise.
#pragma once

#include "../wlr.hpp"

#include <array>
#include <optional>

struct mt_pad_def {
    const char *name;
    int cols, rows; // of the cells that it suggests
    bool insert; // its zone pushes the neighbours aside
    bool maximise; // its zone means maximized
};

struct mt_zone_def {
    int pad;
    int cell_col, cell_row; // from 1
    double fx, fy, fw, fh; // fractions of the usable area
};

extern const std::array<mt_pad_def, 7> MT_PADS;
extern const std::array<mt_zone_def, 15> MT_ZONES;

// The outer thirds, where a window that is inserted pushes its neighbours.
extern const mt_zone_def mt_left_third, mt_right_third;

inline constexpr int mt_hud_width = 606, mt_hud_height = 144;
inline constexpr int mt_workspace_tiles = 9;

// The display's top left corner in layout coordinates.
wlr_box mt_hud_box(const wlr_box &usable, bool top);

// The window's box for a zone, its title bar included, in layout coordinates.
wlr_box mt_zone_landing(const mt_zone_def &zone, const wlr_box &usable, int gap);

// Left edge of a pad; its canvas, in which the zones lie, starts at x + 10, 20 and is 58 by 38.
double mt_pad_x(int pad);
wlr_fbox mt_zone_shape(const mt_zone_def &zone);
// A cell of the pad's grid, whether a zone has it or not. Column and row from 1.
wlr_fbox mt_cell_shape(int pad, int col, int row);
bool mt_cell_has_zone(int pad, int col, int row);
// Tile 0 is workspace 1.
wlr_box mt_workspace_tile(int index);

// The little picture of a window in a workspace tile; nothing when it would be too small to draw. `window`
// and `usable` are in layout coordinates.
std::optional<wlr_fbox> mt_miniature(int index, const wlr_box &window, const wlr_box &usable);

// What the pointer picks: at most one of the two is not -1.
struct mt_pick {
    int zone = -1, workspace = -1;
    friend bool operator==(const mt_pick &, const mt_pick &) = default;
};

// The point is in layout coordinates, as is the display's box.
mt_pick mt_pick_at(const wlr_box &hud, double lx, double ly);
