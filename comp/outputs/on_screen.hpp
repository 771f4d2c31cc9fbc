// Overlays that other programs ask for, as data.
#pragma once

#include "../presentation/overlay.hpp"
#include "../timer.hpp"

struct vantore_on_screen {
    overlay replay_osd;
    timer_source replay_osd_timer, ident_timer; // made at the first use
};
