#include "backdrop_blur.hpp"

#include "../records.hpp"

static wlr_scene_blur *create_below(wlr_scene_node &node, int width, int height)
{
    wlr_scene_blur *blur = wlr_scene_blur_create(node.parent, width, height);
    if (blur == nullptr)
        return nullptr;
    wlr_scene_node_place_below(&blur->node, &node);
    wlr_scene_blur_set_should_only_blur_bottom_layer(blur, false);
    return blur;
}

// The strength says whether the blur is on. A node that is off is kept for the next time.
void backdrop_blur_set(wlr_scene_blur *&blur, wlr_scene_rect *rect, bool on)
{
    if (on && blur == nullptr)
        blur = create_below(rect->node, rect->width, rect->height);
    if (blur == nullptr)
        return;
    wlr_scene_blur_set_strength(blur, on ? 1.0F : 0.0F);
    backdrop_blur_follow(blur, rect);
}

static void lie_behind(wlr_scene_blur &blur, const wlr_scene_node &node, int width, int height,
                       fx_corner_radii corners)
{
    wlr_scene_node_set_position(&blur.node, node.x, node.y);
    wlr_scene_blur_set_size(&blur, width, height);
    wlr_scene_blur_set_corner_radii(&blur, corners);
}

void backdrop_blur_follow(wlr_scene_blur *blur, const wlr_scene_rect *rect)
{
    if (blur == nullptr)
        return;
    lie_behind(*blur, rect->node, rect->width, rect->height, rect->corners);
    wlr_scene_node_set_enabled(&blur->node, rect->node.enabled && blur->strength > 0);
}

// Lives as long as its blur node does.
struct buffer_backdrop {
    wlr_scene_buffer *buffer = nullptr;
    wlr_scene_blur *blur = nullptr;
    listener surface_commit, buffer_destroy, blur_destroy;
};

// The library clears the link when either end dies.
static wlr_scene_blur *blur_of(wlr_scene_buffer &buffer)
{
    linked_node *sibling = linked_nodes_get_sibling(&buffer.blur);
    return sibling != nullptr ? owner_of<&wlr_scene_blur::transparency_mask_source>(sibling) : nullptr;
}

// A surface's commit also reorders the nodes of its subsurfaces, and may leave the blur among them.
static void follow_buffer(buffer_backdrop &b)
{
    wlr_scene_buffer &buffer = *b.buffer;
    const bool sized = buffer.dst_width > 0 && buffer.dst_height > 0;
    const int width = sized || buffer.buffer == nullptr ? buffer.dst_width : buffer.buffer->width;
    const int height = sized || buffer.buffer == nullptr ? buffer.dst_height : buffer.buffer->height;
    lie_behind(*b.blur, buffer.node, width, height, buffer.corners);
    wlr_scene_node_place_below(&b.blur->node, &buffer.node);
    wlr_scene_node_set_enabled(&b.blur->node, buffer.node.enabled && width > 0 && height > 0);
}

static void drop_blur(buffer_backdrop &b)
{
    wlr_scene_node_destroy(&b.blur->node); // deletes the record
}

static void forget_blur(buffer_backdrop &b)
{
    delete &b;
}

static void attach_listeners(buffer_backdrop &b)
{
    listen<&buffer_backdrop::buffer_destroy, drop_blur>(b, b.buffer->node.events.destroy);
    listen<&buffer_backdrop::blur_destroy, forget_blur>(b, b.blur->node.events.destroy);
    if (const wlr_scene_surface *scene = wlr_scene_surface_try_from_buffer(b.buffer))
        listen<&buffer_backdrop::surface_commit, follow_buffer>(b, scene->surface->events.commit);
}

static void put_blur_behind(wlr_scene_buffer &buffer)
{
    wlr_scene_blur *blur = create_below(buffer.node, 0, 0);
    if (blur == nullptr)
        return;
    wlr_scene_blur_set_transparency_mask_source(blur, &buffer);
    auto *b = new buffer_backdrop{.buffer = &buffer, .blur = blur};
    attach_listeners(*b);
    follow_buffer(*b);
}

void backdrop_blur_set(wlr_scene_buffer &buffer, bool on)
{
    wlr_scene_blur *blur = blur_of(buffer);
    if (on && blur == nullptr)
        put_blur_behind(buffer);
    else if (!on && blur != nullptr)
        wlr_scene_node_destroy(&blur->node);
}
