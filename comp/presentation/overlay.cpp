#include "overlay.hpp"

#include "../cairo_buffer.hpp"

bool overlay_show(overlay &shown, wlr_scene_tree *tree, cairo_buffer *picture, int lx, int ly)
{
    if (shown.node == nullptr)
        shown.node = wlr_scene_buffer_create(tree, nullptr);
    if (shown.node == nullptr) {
        wlr_buffer_drop(&picture->base);
        return false;
    }
    scene_buffer_set_cairo(shown.node, picture);
    wlr_scene_node_set_position(&shown.node->node, lx, ly);
    wlr_scene_node_raise_to_top(&shown.node->node);
    wlr_scene_node_set_enabled(&shown.node->node, true);
    return true;
}

void overlay_hide(overlay &shown)
{
    if (shown.node != nullptr)
        wlr_scene_node_set_enabled(&shown.node->node, false);
}
