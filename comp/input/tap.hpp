// The window-manager modifier pressed on its own, as data.
#pragma once

#include "../timer.hpp"

struct vantore_tap {
    bool mod_tapped = false; // it went down alone, and a tap is still possible
    timer_source mod_hold_timer;
    bool shortcuts_shown = false; // it was held: the shell shows the shortcuts
};
