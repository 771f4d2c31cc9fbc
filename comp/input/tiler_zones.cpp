#include "tiler_zones.hpp"

#include "../windows/placement.hpp"

#include <algorithm>

static constexpr double third = 1.0 / 3, two_thirds = 2.0 / 3;

const std::array<mt_pad_def, 7> MT_PADS{{
    {.name = "HALVES", .cols = 2, .rows = 1, .insert = false, .maximise = false},
    {.name = "STACK", .cols = 1, .rows = 2, .insert = false, .maximise = false},
    {.name = "CORNERS", .cols = 2, .rows = 2, .insert = false, .maximise = false},
    {.name = "THIRDS", .cols = 3, .rows = 1, .insert = false, .maximise = false},
    {.name = "75/25", .cols = 2, .rows = 1, .insert = false, .maximise = false},
    {.name = "INSERT", .cols = 3, .rows = 1, .insert = true, .maximise = false},
    {.name = "MAX", .cols = 1, .rows = 1, .insert = false, .maximise = true},
}};

const std::array<mt_zone_def, 15> MT_ZONES{{
    {0, 1, 1, 0, 0, 0.5, 1},
    {0, 2, 1, 0.5, 0, 0.5, 1},
    {1, 1, 1, 0, 0, 1, 0.5},
    {1, 1, 2, 0, 0.5, 1, 0.5},
    {2, 1, 1, 0, 0, 0.5, 0.5},
    {2, 2, 1, 0.5, 0, 0.5, 0.5},
    {2, 1, 2, 0, 0.5, 0.5, 0.5},
    {2, 2, 2, 0.5, 0.5, 0.5, 0.5},
    {3, 1, 1, 0, 0, third, 1},
    {3, 2, 1, third, 0, third, 1},
    {3, 3, 1, two_thirds, 0, third, 1},
    {4, 1, 1, 0, 0, 0.75, 1},
    {4, 2, 1, 0.75, 0, 0.25, 1},
    {5, 2, 1, third, 0, third, 1},
    {6, 1, 1, 0, 0, 1, 1},
}};

const mt_zone_def mt_left_third{.fx = 0, .fy = 0, .fw = third, .fh = 1};
const mt_zone_def mt_right_third{.fx = two_thirds, .fy = 0, .fw = third, .fh = 1};

static constexpr int margin_top = 22, margin_bottom = 166; // from the usable area's edge to the display's top
static constexpr int least_side = 50; // of a landing box

static constexpr double canvas_x = 10, canvas_y = 20, canvas_w = 58, canvas_h = 38; // in a pad
static constexpr double zone_gap = 1.5; // on each side that faces another zone
static constexpr double cell_gap = 3;
static constexpr double edge = 0.001; // fractions closer than this to 0 or 1 touch the edge

wlr_box mt_hud_box(const wlr_box &usable, bool top)
{
    return {.x = usable.x + (usable.width - mt_hud_width) / 2,
            .y = top ? usable.y + margin_top : usable.y + usable.height - margin_bottom,
            .width = mt_hud_width,
            .height = mt_hud_height};
}

wlr_box mt_zone_landing(const mt_zone_def &zone, const wlr_box &usable, int gap)
{
    return {.x = usable.x + int(usable.width * zone.fx + gap / 2.0),
            .y = usable.y + int(usable.height * zone.fy + gap / 2.0),
            .width = std::max(int(usable.width * zone.fw - gap), least_side),
            .height = std::max(int(usable.height * zone.fh - gap), least_side)};
}

double mt_pad_x(int pad)
{
    return 12 + 84 * pad;
}

wlr_fbox mt_zone_shape(const mt_zone_def &zone)
{
    const double left = zone.fx > edge ? zone_gap : 0, top = zone.fy > edge ? zone_gap : 0;
    const double right = zone.fx + zone.fw < 1 - edge ? zone_gap : 0;
    const double bottom = zone.fy + zone.fh < 1 - edge ? zone_gap : 0;
    return {.x = mt_pad_x(zone.pad) + canvas_x + canvas_w * zone.fx + left,
            .y = canvas_y + canvas_h * zone.fy + top,
            .width = canvas_w * zone.fw - left - right,
            .height = canvas_h * zone.fh - top - bottom};
}

wlr_fbox mt_cell_shape(int pad, int col, int row)
{
    const mt_pad_def &def = MT_PADS[size_t(pad)];
    const double w = (canvas_w - (def.cols - 1) * cell_gap) / def.cols;
    const double h = (canvas_h - (def.rows - 1) * cell_gap) / def.rows;
    return {.x = mt_pad_x(pad) + canvas_x + (col - 1) * (w + cell_gap),
            .y = canvas_y + (row - 1) * (h + cell_gap),
            .width = w,
            .height = h};
}

bool mt_cell_has_zone(int pad, int col, int row)
{
    return std::ranges::any_of(MT_ZONES, [&](const mt_zone_def &zone) {
        return zone.pad == pad && zone.cell_col == col && zone.cell_row == row;
    });
}

wlr_box mt_workspace_tile(int index)
{
    return {.x = 103 + 45 * index, .y = 110, .width = 40, .height = 27};
}

std::optional<wlr_fbox> mt_miniature(int index, const wlr_box &window, const wlr_box &usable)
{
    if (usable.width < 1 || usable.height < 1)
        return std::nullopt;
    const wlr_box tile = mt_workspace_tile(index);
    wlr_fbox box{
        .x = std::max(double(window.x - usable.x) / usable.width * 34 + tile.x + 3, tile.x + 2.0),
        .y = std::max(double(window.y - usable.y) / usable.height * 21 + tile.y + 3, tile.y + 2.0),
        .width = std::max(double(window.width) / usable.width * 34, 3.0),
        .height = std::max(double(window.height) / usable.height * 21, 2.0),
    };
    box.width = std::min(box.width, tile.x + tile.width - 2 - box.x);
    box.height = std::min(box.height, tile.y + tile.height - 2 - box.y);
    if (box.width <= 0 || box.height <= 0)
        return std::nullopt;
    return box;
}

// One pixel larger than the zone, so that the gaps between zones do not lose the pick.
static wlr_box zone_hit_box(const wlr_box &hud, const mt_zone_def &zone)
{
    const wlr_fbox shape = mt_zone_shape(zone);
    return {.x = int(hud.x + shape.x),
            .y = int(hud.y + shape.y),
            .width = int(shape.width) + 1,
            .height = int(shape.height) + 1};
}

mt_pick mt_pick_at(const wlr_box &hud, double lx, double ly)
{
    for (size_t i = 0; i < MT_ZONES.size(); i++)
        if (box_contains(zone_hit_box(hud, MT_ZONES[i]), lx, ly))
            return {.zone = int(i)};
    for (int i = 0; i < mt_workspace_tiles; i++) {
        wlr_box tile = mt_workspace_tile(i);
        tile.x += hud.x;
        tile.y += hud.y;
        if (box_contains(tile, lx, ly))
            return {.workspace = i};
    }
    return {};
}
