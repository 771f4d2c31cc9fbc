// Lets expectations compare and print wlr_box.
#pragma once

#include "wlr.hpp"

#include <format>
#include <ostream>

inline bool operator==(const wlr_box &a, const wlr_box &b)
{
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

inline std::ostream &operator<<(std::ostream &out, const wlr_box &box)
{
    return out << std::format("{},{} {}x{}", box.x, box.y, box.width, box.height);
}
