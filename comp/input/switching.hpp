// The window switcher's state, as data.
#pragma once

#include "../fwd.hpp"
#include "../presentation/overlay.hpp"

#include <array>
#include <vector>

struct vantore_switching {
    bool sw_active = false;
    int sw_index = 0; // the selected one of sw_items
    std::vector<vantore_toplevel *> sw_items; // at least two while active, the one raised last first
    uint32_t sw_mod = 0; // the selected window gets the focus when one of these modifiers is released
    bool sw_mod_seen = false; // a keyboard has held all of sw_mod since the switcher opened
    bool sw_thumbs = false; // shows cards with pictures instead of a list
    overlay sw_overlay; // the list
    std::array<wlr_scene_rect *, 4> sw_frame{}; // around the selected window; null before the first use
    wlr_scene_tree *sw_tree = nullptr; // the cards; null while they are not shown
};
