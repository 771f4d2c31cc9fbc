#include "returning.hpp"

#include "../server.hpp"
#include "../windows/maximized.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/arrange.hpp"
#include "../workspaces/focus.hpp"
#include "../workspaces/workspace.hpp"
#include "absent.hpp"
#include "changing.hpp"
#include "lookup.hpp"
#include "mirror.hpp"
#include "output.hpp"
#include "rehome.hpp"

// Other outputs may still be absent, so windows are not fitted to this one yet.
static void take_workspace_back(vantore_output &o, int num)
{
    vantore_workspace *ws = workspace_by_num(*o.server, num);
    if (ws == nullptr || ws->output != nullptr)
        return hand_workspace_to(o);
    ws_link(*ws, o);
    show_bound_workspaces(*o.server);
}

bool output_returns(vantore_output &o)
{
    const auto remembered = recognise(*o.server, *o.wlr_output, likeness::display);
    if (!remembered)
        return false;
    restore_output(o, remembered->description);
    o.turned_off = remembered->turned_off;
    if (!o.turned_off && !remembered->description.mirror)
        take_workspace_back(o, remembered->workspace);
    return true;
}

// Gives displays that were exchanged meanwhile the workspaces of their predecessors.
static void bring_back_by_connector(vantore_server &server)
{
    for (auto &o : each<&vantore_output::link>(server.outputs)) {
        if (was_recognised(o) || !is_usual_screen(o))
            continue;
        const auto remembered = recognise(server, *o.wlr_output, likeness::connector);
        vantore_workspace *ws = remembered ? workspace_by_num(server, remembered->workspace) : nullptr;
        if (ws == nullptr || ws->output != nullptr)
            continue;
        if (o.current_ws != nullptr)
            o.current_ws->output = nullptr;
        ws_link(*ws, o);
    }
}

static void fit_windows(vantore_output &o)
{
    if (o.current_ws == nullptr)
        return;
    if (!is_as_remembered(o))
        fit_maximized_windows(*o.current_ws);
    arrange_workspace(o.current_ws);
}

static void focus_as_before(vantore_server &server, uint32_t id)
{
    vantore_toplevel *t = toplevel_by_id(server, id);
    if (t != nullptr && toplevel_visible(*t))
        focus_toplevel_ex(t, false);
    else if (server.seat->keyboard_state.focused_surface == nullptr)
        focus_top_toplevel(server);
}

// Returns the name that the output of this name has now. Empty if it has not returned.
static std::string name_now(const vantore_server &server, const std::string &name_before)
{
    for (const remembered_output &remembered : server.absence.outputs)
        if (remembered.name_before == name_before)
            return remembered.absent ? "" : remembered.description.name;
    return "";
}

static void resume_mirrors(vantore_server &server)
{
    for (const remembered_output &remembered : server.absence.outputs) {
        vantore_output *o = output_by_name(server, remembered.description.name);
        if (o == nullptr || remembered.absent || !remembered.description.mirror)
            continue;
        mirror_source source = *remembered.description.mirror;
        source.mir_src_out = name_now(server, source.mir_src_out);
        mirror_resume(*o, source);
    }
}

// Displays that the user has unplugged meanwhile are unplugged for us only now.
void outputs_returned(vantore_server &server)
{
    if (server.absence.outputs.empty())
        return;
    bring_back_by_connector(server);
    restore_order(server);
    restore_pointer(server);
    for (auto &o : each<&vantore_output::link>(server.outputs)) {
        o.usable = output_layout_box(o);
        fit_windows(o);
    }
    const uint32_t focused = server.absence.focused;
    resume_mirrors(server);
    if (forget_absent(server))
        rehome_outputs(server);
    else
        show_bound_workspaces(server);
    focus_as_before(server, focused);
    settle_outputs(server);
}
