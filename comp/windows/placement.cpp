#include "placement.hpp"

#include <algorithm>

static constexpr int corner_margin = 16;

wlr_box center_in(const wlr_box &area, int w, int h, int titlebar)
{
    const int x = area.x + (area.width - w) / 2;
    const int y = area.y + (area.height - (h + titlebar)) / 2;
    return {.x = std::max(x, area.x), .y = std::max(y, area.y) + titlebar, .width = w, .height = h};
}

wlr_box with_bar_in(const wlr_box &area, const wlr_box &box, int titlebar)
{
    const int right = area.x + area.width, bottom = area.y + area.height;
    return {.x = std::max(std::min(box.x, right - box.width), area.x),
            .y = std::max(std::min(box.y, bottom), area.y + titlebar),
            .width = box.width,
            .height = box.height};
}

wlr_box float_box_in(const wlr_box &area, int titlebar)
{
    if (area.width < 1 || area.height < 1)
        return float_box_in({.x = 0, .y = 0, .width = 1280, .height = 720}, titlebar);
    const int w = std::clamp(area.width * 6 / 10, 480, 1200);
    const int h = std::clamp(area.height * 6 / 10, 320, 850);
    return {
        .x = area.x + (area.width - w) / 2,
        .y = area.y + (area.height - (h + titlebar)) / 2 + titlebar,
        .width = w,
        .height = h,
    };
}

wlr_box place_in(const wlr_box &area, int w, int h, vantore_place place)
{
    if (place == PLACE_CENTER)
        return {
            .x = area.x + (area.width - w) / 2, .y = area.y + (area.height - h) / 2, .width = w, .height = h};
    const bool right = place == PLACE_TOP_RIGHT || place == PLACE_BOTTOM_RIGHT;
    const bool bottom = place == PLACE_BOTTOM_LEFT || place == PLACE_BOTTOM_RIGHT;
    return {
        .x = area.x + (right ? area.width - w - corner_margin : corner_margin),
        .y = area.y + (bottom ? area.height - h - corner_margin : corner_margin),
        .width = w,
        .height = h,
    };
}

bool fills(const wlr_box &size, const wlr_box &screen)
{
    return screen.width >= 1 && size.width >= screen.width && size.height >= screen.height;
}

bool same_box(const wlr_box &a, const wlr_box &b)
{
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

bool boxes_overlap(const wlr_box &a, const wlr_box &b)
{
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

bool box_contains(const wlr_box &box, double x, double y)
{
    return x >= box.x && x < box.x + box.width && y >= box.y && y < box.y + box.height;
}
