#include "window_ops.hpp"

#include "../broadcast.hpp"
#include "../outputs/lookup.hpp"
#include "../server.hpp"
#include "../windows/states.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/arrange.hpp"
#include "../workspaces/focus.hpp"
#include "../workspaces/switch.hpp"
#include "../workspaces/transfer.hpp"
#include "../workspaces/workspace.hpp"

#include <string_view>
#include <vector>

static constexpr std::string_view by_app = "app:";

static void toggle_floating(vantore_toplevel &t)
{
    t.floating = !t.floating;
    arrange_workspace(t.workspace);
    ipc_broadcast(*t.server, VNT_EVT_WINDOWS);
}

static void apply_winop(vantore_toplevel &t, vnt_winop op, long arg)
{
    switch (op) {
    case VNT_OP_CLOSE:
        tl_close(t);
        break;
    case VNT_OP_FLOAT:
        toggle_floating(t);
        break;
    case VNT_OP_MOVE:
        move_toplevel_to_workspace(t, arg);
        break;
    case VNT_OP_MINIMIZE:
        toplevel_minimize(t);
        break;
    }
}

// Returns ids and not pointers, because an operation on one window may remove or reorder others in the list.
static std::vector<uint32_t> windows_of_app(vantore_server &server, std::string_view name)
{
    std::vector<uint32_t> ids;
    for (const auto &t : each<&vantore_toplevel::link>(server.toplevels))
        if (const char *app_id = tl_app_id(t); app_id != nullptr && app_id == name)
            ids.push_back(t.id);
    return ids;
}

static std::vector<uint32_t> selected_windows(vantore_server &server, const char *word)
{
    const std::string_view selector = word != nullptr ? word : "";
    if (selector.starts_with(by_app))
        return windows_of_app(server, selector.substr(by_app.size()));
    return {ipc_parse_window_id(word)};
}

void ipc_run_window_op(vantore_server &server, vnt_winop op, ipc_words &words)
{
    const char *selector = words.next();
    const char *number = words.next();
    const long arg = number != nullptr ? strtol(number, nullptr, 10) : 0;
    for (const uint32_t id : selected_windows(server, selector))
        if (vantore_toplevel *t = toplevel_by_id(server, id))
            apply_winop(*t, op, arg);
}

static void ipc_focus_toplevel(vantore_toplevel &t)
{
    if (t.workspace != nullptr && t.workspace->output == nullptr)
        if (vantore_output *o = current_output(*t.server))
            output_set_current(*o, t.workspace);
    focus_toplevel_ex(&t, true);
}

void ipc_focus_window(vantore_server &server, ipc_words &words)
{
    if (vantore_toplevel *t = toplevel_by_id(server, ipc_parse_window_id(words.next())))
        ipc_focus_toplevel(*t);
}
