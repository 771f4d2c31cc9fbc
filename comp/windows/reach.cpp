#include "reach.hpp"

#include "toplevel.hpp"

#include <algorithm>

// In a narrow window the bar's buttons reach beyond its left edge.
static void add_bar(vantore_reach &reach, int width)
{
    reach.left = std::min({reach.left, 0, width - dec_reach_left});
    reach.top = std::min(reach.top, -titlebar_height);
    reach.right = std::max(reach.right, width);
    reach.bottom = std::max(reach.bottom, 0);
}

void note_reach(vantore_toplevel &t)
{
    t.reach = {};
    if (t.tabbar->node.enabled) // how wide tabs are only the scene knows
        return;
    t.reach = tl_reach(t);
    if (t.ssd)
        add_bar(t.reach, std::max(t.titlebar->width, tl_shown_width(t)));
}

void forget_reach(vantore_toplevel &t)
{
    t.reach = {};
}
