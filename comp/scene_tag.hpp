// Tells to which record a scene node belongs. The data of a node is either null or the tag of the record that
// owns the node.
#pragma once

#include "wlr.hpp"

enum class scene_owner : unsigned char { window, layer_surface };

struct scene_tag {
    scene_owner owner;
};

// Returns null for a node without a tag. The tag is mutable, because callers reach the owner's record through
// it.
inline scene_tag *tag_of(const wlr_scene_node &node)
{
    return static_cast<scene_tag *>(node.data);
}
