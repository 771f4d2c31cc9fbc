// The Mouse Tiler's display, as data.
#pragma once

#include "../wlr.hpp"

struct vantore_tiler {
    bool mt_visible = false;
    int mt_zone = -1, mt_ws = -1; // the zone or the workspace tile under the pointer; -1 for none
    wlr_output *mt_output = nullptr; // the output that it was drawn for
    wlr_scene_buffer *mt_hud = nullptr; // null until it was shown once
};
