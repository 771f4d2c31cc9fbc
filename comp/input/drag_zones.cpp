#include "drag_zones.hpp"

#include <algorithm>

static constexpr int stack_strip = 32; // at the top of a tile
static constexpr double middle_from = 0.3, middle_to = 0.7;
static constexpr int snap_band = 24; // along the screen's edges, both ends included

static bool in_middle(double fraction)
{
    return fraction > middle_from && fraction < middle_to;
}

drop_zone zone_at(const wlr_box &frame, double x, double y)
{
    const double fx = (x - frame.x) / std::max(frame.width, 1);
    const double fy = (y - frame.y) / std::max(frame.height, 1);
    if (y >= frame.y && y < frame.y + stack_strip)
        return DROP_STACK;
    if (in_middle(fx) && in_middle(fy))
        return DROP_SWAP;
    return fy < 0.5 ? DROP_BEFORE : DROP_AFTER;
}

wlr_box zone_hint_box(const wlr_box &frame, drop_zone zone)
{
    wlr_box box = frame;
    switch (zone) {
    case DROP_SWAP:
        break;
    case DROP_STACK:
        box.height = stack_strip;
        break;
    case DROP_BEFORE:
        box.height = frame.height / 2;
        break;
    case DROP_AFTER:
        box.height = frame.height / 2;
        box.y = frame.y + frame.height - box.height;
        break;
    }
    return box;
}

static bool between(double value, int from, int to)
{
    return value >= from && value <= to;
}

snap_zone snap_zone_for(const wlr_box &usable, double cx, double cy, wlr_box &out)
{
    const auto &[x, y, width, height] = usable;
    if (width < 1 || height < 1)
        return SNAP_NONE;
    const bool left = between(cx, x, x + snap_band);
    const bool right = !left && between(cx, x + width - snap_band, x + width);
    const bool top = between(cy, y, y + snap_band);
    const bool bottom = !top && between(cy, y + height - snap_band, y + height);
    if (!left && !right && !top && !bottom)
        return SNAP_NONE;
    const bool half_width = left || right, half_height = top || bottom;
    const int hw = width / 2, hh = height / 2;
    out = {.x = right ? x + hw : x,
           .y = bottom ? y + hh : y,
           .width = half_width ? hw : width,
           .height = half_height ? hh : height};
    if (top)
        return left ? SNAP_TL : right ? SNAP_TR : SNAP_TOP;
    if (bottom)
        return left ? SNAP_BL : right ? SNAP_BR : SNAP_BOTTOM;
    return left ? SNAP_LEFT : SNAP_RIGHT;
}

uint32_t resize_edges_in(const wlr_box &box, int border, double lx, double ly)
{
    if (lx < box.x || lx >= box.x + box.width || ly < box.y || ly >= box.y + box.height)
        return WLR_EDGE_NONE;
    uint32_t edges = ly >= box.y + box.height - border ? WLR_EDGE_BOTTOM : WLR_EDGE_NONE;
    if (lx < box.x + border)
        edges |= WLR_EDGE_LEFT;
    else if (lx >= box.x + box.width - border)
        edges |= WLR_EDGE_RIGHT;
    return edges;
}

wlr_box resized(const wlr_box &box, uint32_t edges, double border_x, double border_y, int least_w,
                int least_h)
{
    int left = box.x, right = box.x + box.width, top = box.y, bottom = box.y + box.height;
    if ((edges & WLR_EDGE_TOP) != 0)
        top = std::min(int(border_y), bottom - least_h);
    else if ((edges & WLR_EDGE_BOTTOM) != 0)
        bottom = std::max(int(border_y), top + least_h);
    if ((edges & WLR_EDGE_LEFT) != 0)
        left = std::min(int(border_x), right - least_w);
    else if ((edges & WLR_EDGE_RIGHT) != 0)
        right = std::max(int(border_x), left + least_w);
    return {.x = left, .y = top, .width = right - left, .height = bottom - top};
}
