// What hangs at a scene node. The data of a node is either null or the tag of the record that owns the node,
// so that a lookup that meets a node can tell whose it is.
#pragma once

#include "wlr.hpp"

enum class scene_owner : unsigned char { window, layer_surface };

struct scene_tag {
    scene_owner owner;
};

// Null for a node that nobody has tagged. The node's owner may change what it gets.
inline scene_tag *tag_of(const wlr_scene_node &node)
{
    return static_cast<scene_tag *>(node.data);
}
