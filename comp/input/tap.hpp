// The state of the window-manager modifier pressed on its own, as data.
#pragma once

#include "../timer.hpp"

struct vantore_tap {
    bool mod_tapped = false; // the modifier went down alone, and a tap is still possible
    timer_source mod_hold_timer;
    bool shortcuts_shown = false; // the modifier was held, and the shell shows the shortcuts
};
