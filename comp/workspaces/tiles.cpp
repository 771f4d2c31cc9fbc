#include "tiles.hpp"

#include "../windows/placement.hpp"
#include "../windows/toplevel.hpp"
#include "stacks.hpp"
#include "workspace.hpp"

bool toplevel_is_tiled(const vantore_toplevel &t)
{
    return t.workspace != nullptr && t.workspace->layout == VANTORE_LAYOUT_TILING && !t.floating;
}

bool tile_participates(const vantore_toplevel &t)
{
    return toplevel_is_tiled(t) && !t.minimized && !t.fullscreen && tl_mapped(t);
}

int tile_index(vantore_toplevel &t)
{
    if (!tile_participates(t))
        return -1;
    int index = 0;
    for (const auto &other : each<&vantore_toplevel::ws_link>(t.workspace->toplevels)) {
        if (&other == &t)
            break;
        index += tile_participates(other) ? 1 : 0;
    }
    return index;
}

wlr_box tile_frame(const vantore_toplevel &t)
{
    wlr_box box = toplevel_box(t);
    const int bar = t.stack_id != 0 ? tabbar_height : titlebar_of(t);
    box.y -= bar;
    box.height += bar;
    return box;
}

vantore_toplevel *tile_at(vantore_workspace *ws, double lx, double ly, const vantore_toplevel *except)
{
    if (ws == nullptr)
        return nullptr;
    for (auto &t : each<&vantore_toplevel::ws_link>(ws->toplevels))
        if (&t != except && tile_participates(t) && t.scene_tree->node.enabled &&
            box_contains(tile_frame(t), lx, ly))
            return &t;
    return nullptr;
}
