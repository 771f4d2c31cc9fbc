// The overview's state, as data.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

#include <cstdint>
#include <vector>

struct overview_item {
    vantore_toplevel *t;
    wlr_box rect; // the tile
    wlr_scene_buffer *node; // the window's picture; null without memory
    wlr_box close_rect;
    wlr_box start; // the window's own box, from which the picture comes and to which it returns
};

struct overview_workspace {
    vantore_workspace *workspace;
    wlr_box box; // of the thumbnail
};

struct vantore_overviewing {
    wlr_scene_tree *tree =
        nullptr; // below the lock screen, above all else; null while the overview is closed
    wlr_scene_rect *ring = nullptr; // around the selected tile or the workspace under a dragged one
    // Of pictures in their place. The library does not paint what lies below opaque ones, and a blurred
    // backdrop takes its colours from there.
    float opacity = 1;
    bool active = false; // takes the keyboard and the pointer
    bool closing = false; // the pictures return to their windows; no longer active
    int64_t anim_t0 = 0, close_t0 = 0; // when the zoom began, in mono_ms; 0 without one
    std::vector<overview_item> items; // the window raised last first
    int sel = -1; // the selected item, or -1
    std::vector<overview_workspace> ws_items; // by number
    vantore_output *output = nullptr; // not null while active
    int press = -1; // the item under the press, or -1
    double press_x = 0, press_y = 0; // layout coordinates
    bool drag = false; // the pressed item follows the pointer
    bool saw_press =
        false; // since the overview was drawn and a badge was pressed, so the next release counts
    bool swallowed_release = false; // a client may believe that a key is still down
    uint32_t prev_focus_id = 0; // of the window raised last when the overview opened, or 0
};
