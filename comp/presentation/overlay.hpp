// A picture that the compositor shows above the windows. It takes no input. Its node is made when it first
// shows.
#pragma once

#include "../wlr.hpp"

struct cairo_buffer;

// For point_accepts_input of a buffer: the pointer reaches what lies below.
bool takes_no_input(wlr_scene_buffer *buffer, double *sx, double *sy);

struct overlay {
    wlr_scene_buffer *node = nullptr; // owned by the scene; null before the first show
};

// Shows the picture on top of the tree, with its top left corner at a point in layout coordinates. Takes the
// picture over even when it fails. Returns false when the scene has no memory for the node.
bool overlay_show(overlay &shown, wlr_scene_tree *tree, cairo_buffer *picture, int lx, int ly);
// Does the same for a picture with other pixels than layout units: it is scaled to the box.
bool overlay_show(overlay &shown, wlr_scene_tree *tree, cairo_buffer *picture, const wlr_box &at);
// Does nothing before the first show.
void overlay_hide(overlay &shown);
