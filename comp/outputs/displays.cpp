#include "displays.hpp"

#include "../config/files.hpp"
#include "../server.hpp"
#include "../text.hpp"
#include "../workspaces/arrange.hpp"
#include "../workspaces/workspace.hpp"
#include "changing.hpp"
#include "display_profiles.hpp"
#include "layout_moves.hpp"
#include "output.hpp"
#include "output_token.hpp"
#include "power.hpp"
#include "rehome.hpp"

#include <utility>

static constexpr size_t most_bytes = 1 << 20; // of the file, far more than any user writes
static constexpr size_t most_displays = 16;

void ipc_output_command(vantore_server &server, std::string_view token, std::string_view steps)
{
    vantore_output *o = resolve_output_token(server, token);
    if (o == nullptr)
        return wlr_log(WLR_INFO, "IPC output: unknown output '%s'", std::string{token}.c_str());
    change_output(*o, token, output_steps_in(steps));
}

static std::vector<connected_display> connected_displays(const vantore_server &server)
{
    std::vector<connected_display> displays;
    for (const auto &o : each<&vantore_output::link>(server.outputs))
        if (o.wlr_output->name != nullptr && displays.size() < most_displays)
            displays.push_back({.name = o.wlr_output->name, .id = output_token_id(*o.wlr_output)});
    return displays;
}

// Empty if there is no such file.
static std::string displays_file()
{
    std::array<char, 600> path{};
    config_path(path, "displays.conf");
    const config_file file = config_open(path.data());
    std::string text;
    if (file == nullptr)
        return text;
    text.resize(most_bytes);
    text.resize(fread(text.data(), 1, text.size(), file.get()));
    return text;
}

static void displays_replay_line(vantore_server &server, std::string_view line)
{
    if (take_word(line) != "output")
        return;
    const std::string_view token = take_word(line);
    if (vantore_output *o = resolve_output_token(server, token))
        change_output(*o, token, output_steps_in(line));
}

static void replay(vantore_server &server, const display_profile &profile)
{
    g_applying_profile = true;
    for (const std::string &line : profile.lines)
        displays_replay_line(server, line);
    g_applying_profile = false;
    rehome_outputs(server);
    normalize_output_layout(server);
    for (auto &ws : each<&vantore_workspace::link>(server.workspaces))
        if (ws.output != nullptr)
            arrange_workspace(&ws);
}

void displays_autoapply(vantore_server &server)
{
    server.profile_waits = g_dpms_off;
    const auto connected = connected_displays(server);
    if (g_dpms_off || g_applying_profile || connected.empty())
        return;
    auto chosen = display_profile_for(display_profiles_in(displays_file()), connected);
    if (!chosen)
        return;
    wlr_log(WLR_INFO, "displays: applying profile enabling %d of %zu connected output(s)", chosen->enabled,
            connected.size());
    if (const auto shift = anchor_to_origin(chosen->profile))
        wlr_log(WLR_INFO, "displays: anchored profile to 0,0 (shifted by %d,%d)", shift->x, shift->y);
    replay(server, chosen->profile);
}

void displays_catch_up(vantore_server &server)
{
    if (std::exchange(server.profile_waits, false))
        displays_autoapply(server);
}
