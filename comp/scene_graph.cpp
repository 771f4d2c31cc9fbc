// The nodes are created in their stacking order, from bottom to top. That order never changes.

#include "scene_graph.hpp"

#include "config/settings.hpp"
#include "server.hpp"

static constexpr int backdrop_size = 16384; // layout units, more than usual layouts of outputs need
static constexpr std::array backdrop_color{0.06F, 0.07F, 0.10F, 1.0F};
static constexpr std::array drag_hint_color{0.3F, 0.55F, 0.95F, 0.35F};
static constexpr std::array snap_preview_color{0.3F, 0.55F, 0.95F, 0.18F};

static bool add_tree(vantore_server &server, wlr_scene_tree *&field)
{
    field = wlr_scene_tree_create(&server.scene->tree);
    return field != nullptr;
}

static bool add_backdrop(wlr_scene_tree *background)
{
    return wlr_scene_rect_create(background, backdrop_size, backdrop_size, backdrop_color.data()) != nullptr;
}

static bool add_hint(vantore_server &server, wlr_scene_rect *&field, const std::array<float, 4> &color)
{
    field = wlr_scene_rect_create(&server.scene->tree, 1, 1, color.data());
    if (field == nullptr)
        return false;
    wlr_scene_node_set_enabled(&field->node, false);
    return true;
}

static bool add_lock_tree(vantore_server &server)
{
    if (!add_tree(server, server.lock_tree))
        return false;
    wlr_scene_node_set_enabled(&server.lock_tree->node, false);
    return true;
}

bool scene_graph_create(vantore_server &server)
{
    return add_tree(server, server.layers[0]) && add_backdrop(server.layers[0]) &&
           add_tree(server, server.layers[1]) && add_tree(server, server.toplevel_tree) &&
           add_hint(server, server.drag_hint, drag_hint_color) && add_tree(server, server.layers[2]) &&
           add_tree(server, server.fullscreen_tree) && add_tree(server, server.layers[3]) &&
           add_hint(server, server.snap_preview, snap_preview_color) && add_tree(server, server.unmanaged) &&
           add_lock_tree(server) && add_tree(server, server.drag_icon_tree);
}

void scene_graph_apply_accent(vantore_server &server)
{
    if (!g_accent_set)
        return;
    const std::array color{g_accent[0], g_accent[1], g_accent[2], snap_preview_color[3]};
    wlr_scene_rect_set_color(server.snap_preview, color.data());
}
