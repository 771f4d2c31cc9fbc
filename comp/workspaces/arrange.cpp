#include "arrange.hpp"

#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../windows/placement.hpp"
#include "../windows/toplevel.hpp"
#include "workspace.hpp"

// Brings back floats that lie wholly outside the workspace's output, as an unplugged or moved output leaves
// them. One pixel on the output, panels included, is enough to stay.
static void ws_rescue_offscreen_floats(vantore_workspace &ws)
{
    const wlr_box screen = output_layout_box(*ws.output);
    if (screen.width < 1 || screen.height < 1)
        return;
    for (auto &t : each<&vantore_toplevel::ws_link>(ws.toplevels)) {
        const wlr_box box = toplevel_box(t);
        if (box.width < 1 || box.height < 1 || boxes_overlap(box, screen))
            continue;
        t.float_geo = center_in(screen, box.width, box.height, 0);
        wlr_scene_node_set_position(&t.scene_tree->node, t.float_geo.x, t.float_geo.y);
    }
}

void arrange_workspace(vantore_workspace *ws)
{
    if (ws == nullptr || ws->output == nullptr)
        return;
    ws_rescue_offscreen_floats(*ws);
}
