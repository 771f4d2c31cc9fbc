// A picture of the compositor's own above the windows: made when it is first shown, and hidden between.
#pragma once

#include "../wlr.hpp"

struct cairo_buffer;

struct overlay {
    wlr_scene_buffer *node = nullptr; // owned by the scene; null until it was shown once
};

// Shows the picture on top of the tree, its top left corner at a point of the layout. Takes the picture over
// in any case. False, with nothing shown, when the scene has no memory for it.
bool overlay_show(overlay &shown, wlr_scene_tree *tree, cairo_buffer *picture, int lx, int ly);
// Does nothing before the first show.
void overlay_hide(overlay &shown);
