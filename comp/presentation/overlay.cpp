#include "overlay.hpp"

#include "../cairo_buffer.hpp"

bool overlay_show(overlay &shown, wlr_scene_tree *tree, cairo_buffer *picture, int lx, int ly)
{
    return overlay_show(shown, tree, picture, {.x = lx, .y = ly, .width = 0, .height = 0});
}

bool takes_no_input(wlr_scene_buffer *, double *, double *)
{
    return false;
}

// A scene buffer with the size 0 has the size of its picture.
bool overlay_show(overlay &shown, wlr_scene_tree *tree, cairo_buffer *picture, const wlr_box &at)
{
    if (shown.node == nullptr)
        shown.node = wlr_scene_buffer_create(tree, nullptr);
    if (shown.node == nullptr) {
        wlr_buffer_drop(&picture->base);
        return false;
    }
    shown.node->point_accepts_input = takes_no_input;
    scene_buffer_set_cairo(shown.node, picture);
    wlr_scene_buffer_set_dest_size(shown.node, at.width, at.height);
    wlr_scene_node_set_position(&shown.node->node, at.x, at.y);
    wlr_scene_node_raise_to_top(&shown.node->node);
    wlr_scene_node_set_enabled(&shown.node->node, true);
    return true;
}

void overlay_hide(overlay &shown)
{
    if (shown.node != nullptr)
        wlr_scene_node_set_enabled(&shown.node->node, false);
}
