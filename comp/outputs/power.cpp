#include "power.hpp"

#include "../handles.hpp"
#include "../server.hpp"
#include "displays.hpp"
#include "layout_moves.hpp"
#include "lookup.hpp"
#include "mirror.hpp"
#include "output.hpp"
#include "output_mode.hpp"
#include "rehome.hpp"
#include "returning.hpp"
#include "wallpaper.hpp"

// A null mode leaves the output's mode unchanged.
static void set_power(vantore_output &o, bool on, wlr_output_mode *mode)
{
    output_state state;
    wlr_output_state_set_enabled(&state, on);
    if (mode != nullptr)
        wlr_output_state_set_mode(&state, mode);
    if (!wlr_output_commit_state(o.wlr_output, &state))
        wlr_log(WLR_ERROR, "vantore-comp: output %s can't be powered %s", output_name(o.wlr_output),
                on ? "up" : "down");
}

static void power_up(vantore_output &o, wlr_output_mode *mode)
{
    if (o.never_lit)
        o.never_lit = !output_light_up(o.wlr_output);
    else
        set_power(o, true, mode);
}

void output_turn_on(vantore_output &o)
{
    o.turned_off = false;
    if (!g_dpms_off && !o.wlr_output->enabled)
        power_up(o, o.wlr_output->current_mode);
}

void output_turn_off(vantore_output &o)
{
    if (o.wlr_output->enabled)
        set_power(o, false, nullptr);
    o.turned_off = !o.wlr_output->enabled;
}

void keep_one_lit(vantore_server &server)
{
    if (g_dpms_off)
        return;
    if (outputs_enabled_count(server) == 0) {
        for (auto &o : each<&vantore_output::link>(server.outputs))
            output_turn_on(o);
        outputs_rearranged(server); // they may have moved while they were dark
    }
    keep_one_desktop(server);
    find_homes(server);
}

static void show_again(vantore_server &server)
{
    outputs_rearranged(server);
    for (auto &o : each<&vantore_output::link>(server.outputs)) {
        set_wallpaper(o, true, false); // the GPU may have lost the picture while the output was dark
        wlr_output_schedule_frame(o.wlr_output);
    }
}

void set_dpms(vantore_server &server, bool on)
{
    on = on || g_dpms_inhibit;
    if (on && !g_dpms_off)
        return;
    g_dpms_off = !on;
    for (auto &o : each<&vantore_output::link>(server.outputs))
        if (on && !o.turned_off)
            power_up(o, o.wlr_output->current_mode);
        else if (!on && o.wlr_output->enabled)
            set_power(o, false, nullptr);
    if (!on)
        return;
    keep_one_lit(server);
    find_homes(server); // some may have been turned on in the dark
    show_again(server);
    normalize_output_layout(server); // or moved
    displays_catch_up(server);
}

void power_follow(vantore_output &o)
{
    if ((g_dpms_off || o.turned_off) && o.wlr_output->enabled)
        set_power(o, false, nullptr);
}

void set_dpms_inhibit(vantore_server &server, bool on)
{
    g_dpms_inhibit = on;
    if (on)
        set_dpms(server, true);
}

void handle_session_active(vantore_server &server)
{
    if (server.session == nullptr || !server.session->active)
        return;
    g_dpms_off = false;
    for (auto &o : each<&vantore_output::link>(server.outputs)) {
        if (o.turned_off)
            continue;
        wlr_output_mode *mode = o.wlr_output->current_mode;
        if (mode == nullptr)
            mode = wlr_output_preferred_mode(o.wlr_output);
        power_up(o, mode);
    }
    keep_one_lit(server);
    outputs_returned(server);
    find_homes(server);
    show_again(server);
    displays_autoapply(server);
}
