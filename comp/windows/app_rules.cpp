#include "app_rules.hpp"

#include "../config/rules.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../workspaces/workspace.hpp"
#include "fullscreen.hpp"
#include "placement.hpp"

#include <tuple>

// Centres the window first, because a fullscreen float covers the output that it lies on, and a new window
// has no position yet.
static void fill_output_of_workspace(vantore_toplevel &t)
{
    const vantore_output *o = output_showing(t);
    const wlr_box area = o != nullptr ? o->usable : usable_at_cursor(*t.server);
    const wlr_box geometry = tl_get_geometry(t);
    const wlr_box box = center_in(area, geometry.width, geometry.height, titlebar_of(t));
    tl_move(t, box.x, box.y);
    toplevel_set_fullscreen(t, true);
}

void config_apply_rules(vantore_toplevel &t)
{
    const app_rule *rule = rule_for(tl_app_id(t));
    if (rule == nullptr)
        return;
    if (rule->floating >= 0)
        t.floating = rule->floating == 1;
    std::tie(t.no_shadow, t.no_round, t.skip_taskbar, t.rule_follow) =
        std::tie(rule->noshadow, rule->noround, rule->skiptaskbar, rule->follow);
    t.place = rule->place;
    toplevel_set_workspace(t, workspace_by_num(*t.server, rule->ws_num));
    if (rule->fs)
        fill_output_of_workspace(t);
}

void config_refresh_rules(vantore_toplevel &t)
{
    const app_rule *rule = rule_for(tl_app_id(t));
    t.no_shadow = rule != nullptr && rule->noshadow;
    t.no_round = rule != nullptr && rule->noround;
}

void place_toplevel_rule(vantore_toplevel &t)
{
    const vantore_output *o = output_showing(t);
    if (t.place == PLACE_NONE || !t.floating || o == nullptr)
        return;
    const wlr_box geometry = tl_get_geometry(t);
    const wlr_box box = place_in(o->usable, geometry.width, geometry.height, t.place);
    tl_move(t, box.x, box.y);
}
