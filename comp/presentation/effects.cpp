#include "effects.hpp"

#include "../config/settings.hpp"
#include "../graphics.hpp"
#include "backdrop_blur.hpp"

bool fx_on()
{
    return !g_safe_graphics && (!g_soft_render || g_force_effects);
}

bool fx_blurs()
{
    return g_blur && fx_on() && !g_reduce_transparency;
}

void effects_set_blur_tree(wlr_scene_node *node, bool on)
{
    if (node->type == WLR_SCENE_NODE_BUFFER)
        return backdrop_blur_set(*wlr_scene_buffer_from_node(node), on);
    if (node->type != WLR_SCENE_NODE_TREE)
        return;
    // Blur nodes appear and disappear beside the child, so the next link is read only afterwards.
    const wl_list &children = wlr_scene_tree_from_node(node)->children;
    for (wl_list *link = children.next; link != &children; link = link->next) {
        wlr_scene_node *child = wl_container_of(link, child, link);
        effects_set_blur_tree(child, on);
    }
}
