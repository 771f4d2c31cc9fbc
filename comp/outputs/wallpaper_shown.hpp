// What an output remembers of its wallpaper, as data.
#pragma once

#include "../config/settings.hpp"
#include "../wlr.hpp"
#include "wallpaper_pick.hpp"

#include <cstdint>
#include <string>

struct vantore_wallpaper {
    wlr_scene_buffer *node = nullptr; // replaced by each new picture; null while none is shown
    // What was asked for last. The picture may still be on its way, or its file may be unreadable.
    std::string source; // a file or a folder
    std::string path; // the file; empty for none
    wp_mode mode = WP_FILL;
    int width = 0, height = 0; // layout units
    uint64_t gen = 0; // of the last request; results of others are stale
    recent_pictures recent;
    int64_t next_s = 0; // when the slide show goes on, by the wall clock; 0 until the next tick sets it
};
