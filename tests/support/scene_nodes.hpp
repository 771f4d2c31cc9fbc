// Counts the nodes of a scene, including those that no record knows.
#pragma once

#include "wlr.hpp"

#include <optional>

namespace test
{

// Counts all nodes below the tree, or those of one type. The tree itself does not count.
inline int scene_nodes(const wlr_scene_tree &tree, std::optional<wlr_scene_node_type> type = {})
{
    int count = 0;
    wlr_scene_node *node = nullptr;
    wl_list_for_each(node, &tree.children, link)
    {
        count += node->type == type.value_or(node->type) ? 1 : 0;
        if (node->type == WLR_SCENE_NODE_TREE)
            count += scene_nodes(*wlr_scene_tree_from_node(node), type);
    }
    return count;
}

} // namespace test
