#include "layer_placement.hpp"

#include <algorithm>
#include <limits>

// Sums of the client's numbers may not fit into an int.
using wide = int64_t;

// This is far beyond any layout of outputs, and small enough for the scene to add sizes to it.
static constexpr wide farthest = 1'000'000'000;

struct span {
    wide start, length;
};

struct axis_wish {
    wide length; // 0: as much as there is
    bool at_start, at_end;
    wide margin_start, margin_end;
};

static span place_on_axis(const axis_wish &wish, const span &bounds)
{
    if (wish.length == 0)
        return {.start = bounds.start + wish.margin_start,
                .length = bounds.length - wish.margin_start - wish.margin_end};
    span placed{.start = bounds.start + bounds.length / 2 - wish.length / 2, .length = wish.length};
    if (wish.at_start && !wish.at_end)
        placed.start = bounds.start + wish.margin_start;
    if (wish.at_end && !wish.at_start)
        placed.start = bounds.start + bounds.length - wish.length - wish.margin_end;
    return placed;
}

static int position(wide value)
{
    return int(std::clamp(value, -farthest, farthest));
}

static int length(wide value)
{
    return int(std::clamp<wide>(value, 1, std::numeric_limits<int>::max()));
}

wlr_box layer_box(const layer_wish &wish, const wlr_box &full, const wlr_box &usable)
{
    const auto anchored = [&](uint32_t edge) { return (wish.anchor & edge) != 0; };
    const wlr_box &bounds = wish.exclusive_zone == -1 ? full : usable;
    const span across = place_on_axis({.length = wish.width,
                                       .at_start = anchored(ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT),
                                       .at_end = anchored(ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT),
                                       .margin_start = wish.left,
                                       .margin_end = wish.right},
                                      {.start = bounds.x, .length = bounds.width});
    const span down = place_on_axis({.length = wish.height,
                                     .at_start = anchored(ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP),
                                     .at_end = anchored(ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM),
                                     .margin_start = wish.top,
                                     .margin_end = wish.bottom},
                                    {.start = bounds.y, .length = bounds.height});
    return {.x = position(across.start),
            .y = position(down.start),
            .width = length(across.length),
            .height = length(down.length)};
}

wlr_box without_zone(const wlr_box &usable, wlr_edges edge, int zone, int margin)
{
    const auto taken_of = [&](int available) {
        return int(std::clamp<wide>(wide{zone} + margin, 0, std::max(available, 0)));
    };
    wlr_box left = usable;
    switch (edge) {
    case WLR_EDGE_TOP:
        left.y += taken_of(usable.height);
        [[fallthrough]];
    case WLR_EDGE_BOTTOM:
        left.height -= taken_of(usable.height);
        break;
    case WLR_EDGE_LEFT:
        left.x += taken_of(usable.width);
        [[fallthrough]];
    case WLR_EDGE_RIGHT:
        left.width -= taken_of(usable.width);
        break;
    case WLR_EDGE_NONE:
        break;
    }
    return left;
}
