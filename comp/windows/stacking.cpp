#include "stacking.hpp"

#include "showing.hpp"
#include "toplevel.hpp"

bool is_dialog_of(const vantore_toplevel &t, const vantore_toplevel &ancestor)
{
    return any_ancestor(t, [&](const vantore_toplevel &other) { return &other == &ancestor; });
}

static void raise_alone(vantore_toplevel &t)
{
    wlr_scene_node_raise_to_top(&t.scene_tree->node);
    tl_restack(t);
}

// Goes through the windows below once, from the lowest, so that dialogs keep their order among themselves.
void raise_dialogs(vantore_toplevel &t)
{
    const wlr_scene_node *end = &t.scene_tree->node;
    wlr_scene_node *node = nullptr, *next = nullptr;
    wl_list_for_each_safe(node, next, &end->parent->children, link)
    {
        if (node == end)
            break;
        vantore_toplevel *below = toplevel_of(*node);
        if (below != nullptr && is_dialog_of(*below, t))
            raise_alone(*below);
    }
}

void dialog_parent_changed(vantore_toplevel &t)
{
    refresh_showing_alone(t);
    vantore_toplevel *parent = tl_parent(t);
    if (parent != nullptr && parent->scene_tree != nullptr)
        raise_dialogs(*parent);
}

void raise_with_dialogs(vantore_toplevel &t)
{
    raise_alone(t);
    raise_dialogs(t);
}
