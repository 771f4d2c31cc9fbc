#include "backdrop_blur.hpp"

static wlr_scene_blur *create_below(wlr_scene_rect *rect)
{
    wlr_scene_blur *blur = wlr_scene_blur_create(rect->node.parent, rect->width, rect->height);
    if (blur == nullptr)
        return nullptr;
    wlr_scene_node_place_below(&blur->node, &rect->node);
    wlr_scene_blur_set_should_only_blur_bottom_layer(blur, false);
    return blur;
}

// The strength tells whether it is on: a node that is off stays for the next time.
void backdrop_blur_set(wlr_scene_blur *&blur, wlr_scene_rect *rect, bool on)
{
    if (on && blur == nullptr)
        blur = create_below(rect);
    if (blur == nullptr)
        return;
    wlr_scene_blur_set_strength(blur, on ? 1.0F : 0.0F);
    backdrop_blur_follow(blur, rect);
}

void backdrop_blur_follow(wlr_scene_blur *blur, const wlr_scene_rect *rect)
{
    if (blur == nullptr)
        return;
    wlr_scene_node_set_position(&blur->node, rect->node.x, rect->node.y);
    wlr_scene_blur_set_size(blur, rect->width, rect->height);
    wlr_scene_blur_set_corner_radii(blur, rect->corners);
    wlr_scene_node_set_enabled(&blur->node, rect->node.enabled && blur->strength > 0);
}
