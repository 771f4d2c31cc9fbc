#include "command.hpp"

#include "../outputs/output.hpp"
#include "../outputs/power.hpp"
#include "../outputs/virtual.hpp"
#include "../server.hpp"
#include "../workspaces/switch.hpp"
#include "request_text.hpp"

#include <algorithm>

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

struct verb {
    std::string_view name;
    void (*run)(vantore_server &server, ipc_words &words);
};

static constexpr verb verbs[]{
    {"debug-destroy-output", destroy_output},  {"workspace", show_workspace}, {"exit", end_session},
    {"virtual-output", change_virtual_output}, {"dpms", change_power},
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
