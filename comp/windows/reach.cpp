#include "reach.hpp"

#include "../input/resting_pointer.hpp"
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

static vantore_reach reach_of(const vantore_toplevel &t)
{
    if (t.tabbar->node.enabled) // only the scene knows how wide the tabs are
        return {};
    vantore_reach reach = tl_reach(t);
    if (t.ssd)
        add_bar(reach, std::max(t.titlebar->width, tl_shown_width(t)));
    return reach;
}

void note_reach(vantore_toplevel &t)
{
    const vantore_reach reach = reach_of(t);
    if (reach != t.reach)
        pointer_look_again(*t.server);
    t.reach = reach;
}

void forget_reach(vantore_toplevel &t)
{
    t.reach = {};
}
