#include "layout_repair.hpp"

#include "../windows/placement.hpp"

#include <algorithm>

static constexpr int most_rounds = 16;

static bool has_size(const wlr_box &box)
{
    return box.width >= 1 && box.height >= 1;
}

// Goes sideways where both ways are equally long.
static layout_offset way_out_of(const wlr_box &moved, const wlr_box &other)
{
    const int right = other.x + other.width - moved.x, left = moved.x + moved.width - other.x;
    const int down = other.y + other.height - moved.y, up = moved.y + moved.height - other.y;
    if (std::min(right, left) > std::min(down, up))
        return {.x = 0, .y = down < up ? down : -up};
    return {.x = right < left ? right : -left, .y = 0};
}

layout_offset way_out_of_overlaps(const wlr_box &moved, std::span<const wlr_box> others)
{
    layout_offset way;
    for (int round = 0; round < most_rounds && has_size(moved); round++) {
        const wlr_box now{moved.x + way.x, moved.y + way.y, moved.width, moved.height};
        const auto overlapped = std::ranges::find_if(
            others, [&](const wlr_box &other) { return has_size(other) && boxes_overlap(now, other); });
        if (overlapped == others.end())
            break;
        const layout_offset next = way_out_of(now, *overlapped);
        way.x += next.x;
        way.y += next.y;
    }
    return way;
}

std::optional<layout_offset> way_to_origin(std::span<const wlr_box> outputs)
{
    int least_x = 0, least_y = 0;
    for (const wlr_box &box : outputs) {
        if (!has_size(box))
            continue;
        least_x = std::min(least_x, box.x);
        least_y = std::min(least_y, box.y);
    }
    if (least_x == 0 && least_y == 0)
        return std::nullopt;
    return layout_offset{.x = -least_x, .y = -least_y};
}
