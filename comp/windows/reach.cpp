#include "reach.hpp"

#include "toplevel.hpp"

#include <algorithm>

// In a narrow window, the buttons extend beyond the bar's left edge.
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
    if (t.tabbar->node.enabled) // only the scene knows how wide the tabs are
        return;
    t.reach = tl_reach(t);
    if (t.ssd)
        add_bar(t.reach, std::max(t.titlebar->width, tl_shown_width(t)));
}

void forget_reach(vantore_toplevel &t)
{
    t.reach = {};
}
