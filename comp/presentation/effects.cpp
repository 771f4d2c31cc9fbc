// Windows that move, are tiled or become fullscreen need other effects. Nodes of effects are made on first
// need and kept until their window's scene tree dies, so that a reload can turn them on again.

#include "effects.hpp"

#include "../color.hpp"
#include "../config/settings.hpp"
#include "../config/theme.hpp"
#include "../graphics.hpp"
#include "../windows/effect_state.hpp"
#include "../windows/toplevel.hpp"
#include "backdrop_blur.hpp"

#include <algorithm>

static constexpr float glow = 0.65F; // strength of a shadow in the accent's colour

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

wlr_scene_buffer *toplevel_main_buffer_in(wlr_scene_node *node, const wlr_surface *surface)
{
    if (node->type == WLR_SCENE_NODE_BUFFER) {
        wlr_scene_buffer *buffer = wlr_scene_buffer_from_node(node);
        const wlr_scene_surface *shown = wlr_scene_surface_try_from_buffer(buffer);
        return shown != nullptr && shown->surface == surface ? buffer : nullptr;
    }
    if (node->type != WLR_SCENE_NODE_TREE)
        return nullptr;
    wlr_scene_node *child = nullptr;
    wl_list_for_each(child, &wlr_scene_tree_from_node(node)->children, link)
    {
        if (wlr_scene_buffer *found = toplevel_main_buffer_in(child, surface))
            return found;
    }
    return nullptr;
}

wlr_scene_buffer *toplevel_main_buffer(const vantore_toplevel &t)
{
    const wlr_surface *surface = tl_surface(t);
    return t.scene_tree != nullptr && surface != nullptr
               ? toplevel_main_buffer_in(&t.scene_tree->node, surface)
               : nullptr;
}

effect_plan effects_of(const vantore_toplevel &t)
{
    const effect_settings settings{
        .allowed = fx_on(), .shadows = g_shadows, .corner_radius = g_corner_radius, .dim = g_dim_inactive};
    return plan_effects(effect_state_of(t), settings);
}

static void round_corners(vantore_toplevel &t, const effect_plan &plan)
{
    if (wlr_scene_buffer *buffer = toplevel_main_buffer(t))
        wlr_scene_buffer_set_corner_radii(buffer, plan.surface);
    wlr_scene_rect_set_corner_radii(t.titlebar, plan.bar);
    wlr_scene_buffer_set_corner_radii(t.tabbar, plan.tabs);
}

static color dim_color()
{
    return {0, 0, 0, g_dim_inactive};
}

// Above the title bar and below the window's menus.
static void make_dim_rect(vantore_toplevel &t)
{
    t.dim_rect = wlr_scene_rect_create(t.scene_tree, 1, 1, dim_color().data());
    if (t.dim_rect == nullptr)
        return;
    t.dim_rect->accepts_input = false;
    wlr_scene_node_set_enabled(&t.dim_rect->node, false);
    wlr_scene_node_place_above(&t.dim_rect->node, &t.tabbar->node);
}

// A client that decorates its window itself may draw a shadow around it, which does not get darker.
static wlr_box box_to_dim(const vantore_toplevel &t, const wlr_box &frame)
{
    const wlr_box geometry = tl_get_geometry(t);
    return t.ssd ? frame : window_frame(std::max(geometry.width, 1), std::max(geometry.height, 1), false);
}

static void lay_out_dim(vantore_toplevel &t, const effect_plan &plan, const wlr_box &box)
{
    if (plan.can_dim && t.dim_rect == nullptr)
        make_dim_rect(t);
    if (t.dim_rect == nullptr)
        return;
    wlr_scene_rect_set_color(t.dim_rect, dim_color().data());
    wlr_scene_rect_set_size(t.dim_rect, box.width, box.height);
    wlr_scene_node_set_position(&t.dim_rect->node, box.x, box.y);
    wlr_scene_rect_set_corner_radius(t.dim_rect, plan.radius);
    wlr_scene_node_set_enabled(&t.dim_rect->node, plan.dim);
}

static void shadow_apply_color(wlr_scene_shadow *shadow, bool focused)
{
    if (shadow == nullptr)
        return;
    color c = g_shadow_color;
    if (g_glow && focused && g_accent_set)
        c = {g_accent[0] * glow, g_accent[1] * glow, g_accent[2] * glow, glow};
    wlr_scene_shadow_set_color(shadow, c.data());
}

static void make_shadow(vantore_toplevel &t, int radius)
{
    t.shadow = wlr_scene_shadow_create(t.scene_tree, 1, 1, radius, shadow_sigma, g_shadow_color.data());
    if (t.shadow != nullptr)
        wlr_scene_node_lower_to_bottom(&t.shadow->node);
}

static void shape_shadow(wlr_scene_shadow &shadow, const shadow_shape &shape, int radius)
{
    wlr_scene_shadow_set_size(&shadow, shape.box.width, shape.box.height);
    wlr_scene_shadow_set_corner_radius(&shadow, radius);
    wlr_scene_node_set_position(&shadow.node, shape.box.x, shape.box.y);
    wlr_scene_shadow_set_clipped_region(&shadow, shape.hole);
}

static void lay_out_shadow(vantore_toplevel &t, const effect_plan &plan, const wlr_box &frame)
{
    if (plan.shadow && t.shadow == nullptr)
        make_shadow(t, plan.radius);
    if (t.shadow == nullptr)
        return;
    shadow_apply_color(t.shadow, !t.dimmed);
    wlr_scene_node_set_enabled(&t.shadow->node, plan.shadow);
    if (plan.shadow)
        shape_shadow(*t.shadow, shadow_around(frame, plan.radius), plan.radius);
}

void effects_layout(vantore_toplevel &t)
{
    if (t.scene_tree == nullptr)
        return;
    const effect_plan plan = effects_of(t);
    const wlr_box frame = window_frame(tl_shown_width(t), tl_shown_height(t), plan.has_bar);
    round_corners(t, plan);
    lay_out_dim(t, plan, box_to_dim(t, frame));
    lay_out_shadow(t, plan, frame);
}

void effects_follow_focus(vantore_toplevel &t)
{
    shadow_apply_color(t.shadow, !t.dimmed);
    if (t.dim_rect != nullptr)
        wlr_scene_node_set_enabled(&t.dim_rect->node, effects_of(t).dim);
}
