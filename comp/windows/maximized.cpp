#include "maximized.hpp"

#include "../outputs/absent.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../workspaces/tiles.hpp"
#include "../workspaces/workspace.hpp"
#include "placement.hpp"
#include "states.hpp"
#include "toplevel.hpp"

// A window of an absent output keeps to that one.
static bool keeps_to_usable_area(const vantore_toplevel &t)
{
    if (t.workspace != nullptr && absent_output_of(*t.workspace) != nullptr)
        return false;
    return t.maximized && !t.fullscreen && tl_mapped(t) && !toplevel_is_tiled(t);
}

// The client may not have drawn yet at the size that was asked of it.
static wlr_box asked_box(const vantore_toplevel &t)
{
    wlr_box box = toplevel_box(t);
    if (t.want_w > 0 && t.want_h > 0) {
        box.width = t.want_w;
        box.height = t.want_h;
    }
    return box;
}

// Goes by the usable boxes, because outputs may already have other places in the layout. Where several
// overlap, the window belongs to the one that shows it.
static const vantore_output *output_under(const vantore_toplevel &t)
{
    const wlr_box box = asked_box(t);
    const auto is_over = [&](const vantore_output &o) {
        return is_usual_screen(o) &&
               box_contains(o.usable, box.x + box.width / 2.0, box.y + box.height / 2.0);
    };
    if (const vantore_output *o = output_showing(t); o != nullptr && is_over(*o))
        return o;
    for (const auto &o : each<&vantore_output::link>(t.server->outputs))
        if (is_over(o))
            return &o;
    return nullptr;
}

static bool lies_on_an_output(const vantore_server &server, const wlr_box &box)
{
    for (const auto &o : each<&vantore_output::link>(server.outputs))
        if (boxes_overlap(box, output_layout_box(o)))
            return true;
    return false;
}

static void fill(vantore_toplevel &t, const vantore_output *o)
{
    if (o == nullptr || o->usable.width < 1)
        return;
    toplevel_fill(t, o->usable);
    // The window must not later return to a place where an output used to be.
    if (!lies_on_an_output(*t.server, t.saved_geo))
        t.saved_geo = center_in(o->usable, t.saved_geo.width, t.saved_geo.height, titlebar_of(t));
}

maximized_windows::maximized_windows(vantore_server &server)
{
    for (auto &t : each<&vantore_toplevel::link>(server.toplevels)) {
        if (!keeps_to_usable_area(t))
            continue;
        const vantore_output *o = output_under(t);
        places.push_back({.t = &t, .o = o, .usable = o != nullptr ? o->usable : wlr_box{}});
    }
}

void maximized_windows::follow() const
{
    for (const place &p : places) {
        if (p.o == nullptr)
            fill(*p.t, output_showing(*p.t));
        else if (!same_box(p.usable, p.o->usable))
            fill(*p.t, p.o);
    }
}

void fit_maximized(vantore_toplevel &t)
{
    if (!keeps_to_usable_area(t))
        return;
    const vantore_output *under = output_under(t);
    fill(t, under != nullptr ? under : output_showing(t));
}

void fit_maximized_windows(vantore_workspace &ws)
{
    for (auto &t : each<&vantore_toplevel::ws_link>(ws.toplevels))
        fit_maximized(t);
}
