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
    wlr_scene_node *child = nullptr, *next = nullptr; // blur nodes come and go before the child
    wl_list_for_each_safe(child, next, &wlr_scene_tree_from_node(node)->children, link)
        effects_set_blur_tree(child, on);
}
