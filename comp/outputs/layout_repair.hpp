// Where outputs go so that they neither overlap nor begin left of or above 0, 0. Boxes are in layout
// coordinates, and a box with a side below 1 stands for an output without a place.
#pragma once

#include "../wlr.hpp"

#include <optional>
#include <span>

struct layout_offset {
    int x = 0, y = 0;
    friend bool operator==(const layout_offset &, const layout_offset &) = default;
};

// Returns how far the moved output has to go on, the shortest way out of each output that it overlaps, one
// after the other. Gives up after 16 of them, because two neighbours can push it to and fro.
layout_offset way_out_of_overlaps(const wlr_box &moved, std::span<const wlr_box> others);

// Returns how far all outputs have to go so that none begins left of or above 0, 0, where many programs
// expect none. Nothing if they already do not.
std::optional<layout_offset> way_to_origin(std::span<const wlr_box> outputs);
