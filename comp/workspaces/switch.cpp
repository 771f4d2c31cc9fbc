#include "switch.hpp"

#include "../broadcast.hpp"
#include "../input/resting_pointer.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../presentation/slide.hpp"
#include "../server.hpp"
#include "../text.hpp"
#include "../windows/toplevel.hpp"
#include "arrange.hpp"
#include "focus.hpp"
#include "workspace.hpp"

void focus_output(vantore_server &server, vantore_output &o)
{
    const wlr_box box = output_layout_box(o);
    if (wlr_box_contains_point(&box, server.cursor->x, server.cursor->y))
        return;
    wlr_cursor_warp(server.cursor, nullptr, box.x + box.width * 0.5, box.y + box.height * 0.5);
    pointer_look_again(server);
}

void focus_workspace_top(vantore_workspace &ws)
{
    for (auto &t : each<&vantore_toplevel::link>(ws.server->toplevels)) {
        if (t.workspace == &ws && t.scene_tree->node.enabled) {
            focus_toplevel_ex(&t, true);
            return;
        }
    }
    focus_clear(*ws.server);
}

vantore_output *home_of(const vantore_workspace &ws)
{
    vantore_output *home = output_by_name(*ws.server, text_of(ws.pref_output));
    return home != nullptr && shows_desktop(*home) ? home : nullptr;
}

static vantore_output *output_to_show_on(const vantore_workspace &ws)
{
    if (ws.output != nullptr)
        return ws.output;
    vantore_output *home = home_of(ws);
    return home != nullptr ? home : current_output(*ws.server);
}

void goto_workspace(vantore_server &server, long num)
{
    vantore_workspace *ws = workspace_by_num(server, num);
    vantore_output *o = ws != nullptr ? output_to_show_on(*ws) : nullptr;
    if (o == nullptr)
        return;
    if (o->current_ws != ws) {
        vantore_workspace *previous = o->current_ws;
        if (previous != nullptr)
            previous->output = nullptr;
        ws_bind(*ws, *o);
        refresh_workspace_visibility(server);
        arrange_workspace(previous);
        arrange_workspace(ws);
    }
    focus_output(server, *o);
    focus_workspace_top(*ws);
    ipc_broadcast(server, VNT_EVT_WORKSPACES);
}

void output_set_current(vantore_output &o, vantore_workspace *ws)
{
    if (ws == nullptr || ws == o.current_ws)
        return;
    vantore_workspace *previous = o.current_ws;
    vantore_output *from = ws->output;
    if (previous != nullptr)
        previous->output = nullptr;
    if (from != nullptr)
        from->current_ws = nullptr;
    ws_bind(*ws, o);
    if (from != nullptr && previous != nullptr)
        ws_bind(*previous, *from);
    refresh_workspace_visibility(*o.server);
    arrange_workspace(ws);
    arrange_workspace(previous);
    if (previous != nullptr)
        slide_start(*o.server, previous->tree, ws->tree, ws->num > previous->num ? 1 : -1,
                    output_layout_box(o).width);
    ipc_broadcast(*o.server, VNT_EVT_WORKSPACES);
}
