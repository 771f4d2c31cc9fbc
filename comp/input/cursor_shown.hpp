// What the cursor shows, as data: a name of the theme, a client's surface, or nothing.
#pragma once

#include "../records.hpp"

#include <array>

struct vantore_cursor_shown {
    // What cursor_apply applied last. At first, it is a value that no configuration can contain.
    std::array<char, 128> applied_theme{"\1"};
    int applied_size = -1;
    bool is_chosen = false; // whether the session has chosen an image yet; hiding the cursor counts
    bool cur_cursor_named = false;
    std::array<char, 48> cur_cursor_name{};
    wlr_surface *cur_cursor_surface = nullptr; // cleared when the surface is destroyed
    int32_t cur_cursor_hx = 0, cur_cursor_hy = 0; // its hotspot
    listener cur_cursor_surface_destroy;
};
