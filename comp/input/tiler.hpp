// The Mouse Tiler's display, as data.
#pragma once

#include "../presentation/overlay.hpp"

struct vantore_tiler {
    bool mt_visible = false;
    int mt_zone = -1, mt_ws = -1; // the zone or the workspace tile under the pointer; -1 for none
    wlr_output *mt_output = nullptr; // the output for which the display was drawn
    overlay mt_hud;
};
