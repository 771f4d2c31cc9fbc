#include "mapping.hpp"

#include "../broadcast.hpp"
#include "../outputs/absent.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../presentation/open_fade.hpp"
#include "../server.hpp"
#include "../visibility.hpp"
#include "../workspaces/focus.hpp"
#include "../workspaces/switch.hpp"
#include "../workspaces/workspace.hpp"
#include "placement.hpp"
#include "toplevel.hpp"

vantore_workspace *workspace_for_new_window(vantore_server &server)
{
    if (const remembered_output *absent = absent_output_under_pointer(server))
        if (vantore_workspace *ws = workspace_by_num(server, absent->workspace))
            return ws;
    const vantore_output *o = current_output(server);
    if (o != nullptr && o->current_ws != nullptr)
        return o->current_ws;
    return each<&vantore_workspace::link>(server.workspaces).first();
}

void center_toplevel(vantore_toplevel &t)
{
    const wlr_box usable = usable_at_cursor(*t.server);
    if (usable.width == 0 || t.fullscreen)
        return;
    const wlr_box geometry = tl_get_geometry(t);
    const wlr_box box = center_in(usable, geometry.width, geometry.height, titlebar_of(t));
    tl_move(t, box.x, box.y);
}

void focus_new_window(vantore_toplevel &t)
{
    vantore_server &server = *t.server;
    const wlr_surface *focused = server.seat->keyboard_state.focused_surface;
    if (t.rule_follow && !toplevel_visible(t))
        goto_workspace(server, t.workspace->num);
    if (toplevel_visible(t))
        focus_toplevel_ex(&t, true);
    if (server.seat->keyboard_state.focused_surface == focused)
        ipc_broadcast(server, VNT_EVT_WINDOWS); // a change of focus announces it already
}

void leave_shown_windows(vantore_toplevel &t)
{
    unlink_from_list(t.link);
    anim_open_end(t);
    t.fs_demoted = false;
    visible_changed(*t.server);
}

void refocus_after_unmap(vantore_toplevel &t)
{
    const wlr_surface *focused = t.server->seat->keyboard_state.focused_surface;
    if (focused == nullptr || focused == tl_surface(t) || !focused->mapped)
        focus_top_toplevel(*t.server);
    if (t.server->seat->keyboard_state.focused_surface != tl_surface(t))
        deactivate_window(tl_surface(t)); // it was active while a panel had the keyboard
}
