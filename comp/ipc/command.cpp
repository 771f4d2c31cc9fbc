#include "command.hpp"

#include "../broadcast.hpp"
#include "../input/overview.hpp"
#include "../layout.hpp"
#include "../outputs/displays.hpp"
#include "../outputs/identify.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../outputs/power.hpp"
#include "../outputs/replay_osd.hpp"
#include "../outputs/virtual.hpp"
#include "../server.hpp"
#include "../workspaces/layout.hpp"
#include "../workspaces/switch.hpp"
#include "../workspaces/transfer.hpp"
#include "diagnostics.hpp"
#include "request_text.hpp"
#include "seat_commands.hpp"
#include "window_ops.hpp"

#include <algorithm>
#include <cstdlib>

static void destroy_output(vantore_server &server, ipc_words &words)
{
    if (const char *name = words.next())
        if (vantore_output *o = output_by_name(server, name))
            wlr_output_destroy(o->wlr_output);
}

static void show_workspace(vantore_server &server, ipc_words &words)
{
    if (const char *num = words.next())
        goto_workspace(server, strtol(num, nullptr, 10));
}

static void end_session(vantore_server &server, ipc_words &)
{
    wl_display_terminate(server.display);
}

static void change_virtual_output(vantore_server &server, ipc_words &words)
{
    const char *word = words.next();
    const std::string_view wish = word != nullptr ? word : "off";
    if (wish == "off" || wish == "destroy")
        virtual_output_destroy(server);
    else if (const auto size = ipc_parse_size(word))
        virtual_output_create(server, size->width, size->height);
}

static void change_power(vantore_server &server, ipc_words &words)
{
    const char *word = words.next();
    const std::string_view wish = word != nullptr ? word : "off";
    if (wish == "inhibit" || wish == "uninhibit")
        set_dpms_inhibit(server, wish == "inhibit");
    else
        set_dpms(server, wish == "on");
}

static vantore_workspace *workspace_numbered(vantore_server &server, const char *num)
{
    return num != nullptr ? workspace_by_num(server, strtol(num, nullptr, 10)) : nullptr;
}

static void change_layout(vantore_server &server, ipc_words &words)
{
    vantore_workspace *ws = workspace_numbered(server, words.next());
    const char *layout = words.next();
    if (ws == nullptr || layout == nullptr)
        return;
    const bool tiling = std::string_view{layout} == "tiling";
    set_ws_layout(*ws, tiling ? VANTORE_LAYOUT_TILING : VANTORE_LAYOUT_FLOATING);
}

static void change_tile_mode(vantore_server &server, ipc_words &words)
{
    vantore_workspace *ws = workspace_numbered(server, words.next());
    const char *mode = words.next();
    if (ws == nullptr || mode == nullptr)
        return;
    set_ws_layout(*ws, VANTORE_LAYOUT_TILING);
    set_ws_tile_mode(*ws, tile_mode_from_name(mode));
}

static void move_workspace(vantore_server &server, ipc_words &words)
{
    vantore_workspace *ws = workspace_numbered(server, words.next());
    const char *name = words.next();
    if (vantore_output *o = name != nullptr ? output_by_name(server, name) : nullptr)
        move_workspace_to_output(ws, *o);
}

static void change_one_output(vantore_server &server, ipc_words &words)
{
    const char *token = words.next();
    if (token != nullptr)
        ipc_output_command(server, token, words.line());
}

static void open_launcher(vantore_server &server, ipc_words &)
{
    ipc_broadcast(server, VNT_EVT_LAUNCHER);
}

static void toggle_shortcuts(vantore_server &server, ipc_words &)
{
    server.tap.shortcuts_shown = !server.tap.shortcuts_shown;
    ipc_broadcast(server, VNT_EVT_SHORTCUTS);
}

static void toggle_overview(vantore_server &server, ipc_words &)
{
    overview_toggle(server);
}

static void show_message(vantore_server &server, ipc_words &words)
{
    replay_osd_show(server, words.line());
}

static void identify_outputs(vantore_server &server, ipc_words &words)
{
    static constexpr long default_seconds = 4;
    const char *word = words.next();
    if (word != nullptr && std::string_view{word} == "off")
        identify_clear(server);
    else
        identify_show(server, word != nullptr ? strtol(word, nullptr, 10) : default_seconds);
}

struct verb {
    std::string_view name;
    void (*run)(vantore_server &server, ipc_words &words);
};

static constexpr verb verbs[]{
    {"dump-layers", ipc_dump_layers},
    {"capture-probe", ipc_capture_probe},
    {"debug-destroy-output", destroy_output},
    {"workspace", show_workspace},
    {"exit", end_session},
    {"launcher", open_launcher},
    {"shortcuts", toggle_shortcuts},
    {"osd", show_message},
    {"overview", toggle_overview},
    {"identify", identify_outputs},
    {"virtual-output", change_virtual_output},
    {"dpms", change_power},
    {"output", change_one_output},
    {"ws-layout", change_layout},
    {"ws-tile-mode", change_tile_mode},
    {"focus", ipc_focus_window},
    {"close", ipc_window_op<VNT_OP_CLOSE>},
    {"float", ipc_window_op<VNT_OP_FLOAT>},
    {"move", ipc_window_op<VNT_OP_MOVE>},
    {"minimize", ipc_window_op<VNT_OP_MINIMIZE>},
    {"move-workspace-to-output", move_workspace},
    {"seat", ipc_seat_command},
};

void ipc_run_command(vantore_server &server, std::string_view text)
{
    ipc_words words{text};
    const char *name = words.next();
    if (name == nullptr)
        return;
    const auto *found = std::ranges::find(verbs, name, &verb::name);
    if (found != std::end(verbs))
        found->run(server, words);
    else
        wlr_log(WLR_INFO, "vantore-comp: unknown IPC command '%s'", name);
}
