#include "states.hpp"

#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../presentation/decorations.hpp"
#include "../presentation/open_fade.hpp"
#include "../server.hpp"
#include "../visibility.hpp"
#include "../workspaces/arrange.hpp"
#include "../workspaces/focus.hpp"
#include "../workspaces/workspace.hpp"
#include "placement.hpp"
#include "showing.hpp"
#include "stacking.hpp"
#include "toplevel.hpp"

#include <algorithm>

wlr_box default_float_box(const vantore_toplevel &t)
{
    const vantore_workspace *ws = t.workspace;
    const wlr_box area =
        ws != nullptr && ws->output != nullptr ? ws->output->usable : usable_at_cursor(*t.server);
    return float_box_in(area, titlebar_of(t));
}

void remember_as_floating(vantore_toplevel &t, int w, int h)
{
    const wlr_scene_node &node = t.scene_tree->node;
    t.float_geo = {.x = node.x, .y = node.y, .width = w, .height = h};
}

wlr_box box_to_return_to(const vantore_toplevel &t)
{
    const wlr_box box = toplevel_box(t);
    return box.width < 2 || box.height < 2 ? default_float_box(t) : box;
}

void toplevel_fill(vantore_toplevel &t, const wlr_box &usable)
{
    const int bar = titlebar_of(t);
    tl_place(t, {usable.x, usable.y + bar, usable.width, std::max(usable.height - bar, 1)});
}

static void maximize(vantore_toplevel &t)
{
    t.saved_geo = box_to_return_to(t);
    const wlr_box usable = usable_at_cursor(*t.server);
    if (usable.width == 0)
        return;
    toplevel_fill(t, usable);
    t.maximized = true;
}

static void unmaximize(vantore_toplevel &t)
{
    tl_place(t, t.saved_geo);
    t.maximized = false;
}

void toplevel_toggle_maximize(vantore_toplevel &t)
{
    if (t.fullscreen)
        return;
    if (t.maximized)
        unmaximize(t);
    else
        maximize(t);
    dec_refresh_max_button(t);
    tl_set_maximized(t, t.maximized);
}

static vantore_toplevel *first_other_shown(const vantore_toplevel &t)
{
    for (auto &other : each<&vantore_toplevel::link>(t.server->toplevels))
        if (&other != &t && toplevel_visible(other))
            return &other;
    return nullptr;
}

// If a panel has the keyboard, the window may still be the active one.
static void give_up_focus(vantore_toplevel &t)
{
    if (has_keyboard(*t.server, tl_surface(t)))
        focus_clear(*t.server);
    else
        deactivate_window(tl_surface(t));
}

void toplevel_minimize(vantore_toplevel &t)
{
    vantore_toplevel *next = first_other_shown(t); // before another tab of its stack shows
    t.minimized = true;
    anim_open_end(t);
    tl_set_minimized(t, true);
    t.put_away = t.fullscreen;
    refresh_showing(t);
    visible_changed(*t.server);
    focus_toplevel_ex(next, true);
    give_up_focus(t);
    arrange_workspace(t.workspace);
}

void restore_toplevel_parent(vantore_toplevel &t)
{
    refresh_showing(t);
    refresh_showing_of_dialogs(t);
    raise_with_dialogs(t);
}
