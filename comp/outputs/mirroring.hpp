// What an output shows while it mirrors a window or another output, as data.
#pragma once

#include "../handles.hpp"
#include "../picture_size.hpp"
#include "../surface_watch.hpp"
#include "mirror_fit.hpp"
#include "mirror_source.hpp"

#include <optional>
#include <string>

struct vantore_mirror {
    bool mir_on = false;
    mirror_source source;
    wlr_scene_tree *mir_tree = nullptr; // at the output's place in the layout; null unless mir_on
    wlr_scene_rect *mir_bg = nullptr; // black, of the output's size
    wlr_scene_buffer *mir_buf = nullptr; // the picture
    wlr_scene_buffer *mir_cursor = nullptr; // the copy of the pointer; null before its first use
    swapchain_handle mir_sc; // in the source's size
    picture_size drawn; // of the picture that is shown
    mirror_fit fit; // of that picture
    surface_watch_handle watch; // of a source window
    int64_t mir_last_ns = 0; // when a picture of the window was drawn last
    bool late = false; // the window has drawn too soon after that, so its latest picture is yet to be shown
    std::optional<uint32_t> seen; // commit_seq of the source output when its picture was drawn
    std::string mir_cur_key; // tells which picture mir_cursor shows; empty for none
    wlr_fbox mir_cur_part{}; // the part of its buffer that is the picture
    int mir_cur_w = 0, mir_cur_h = 0; // of that picture, in pixels of the source
    double mir_cur_hx = 0, mir_cur_hy = 0; // its hotspot
};
