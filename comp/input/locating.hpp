// The state of the shaken pointer, as data. All times come from mono_ms.
#pragma once

#include "../wlr.hpp"
#include "shake.hpp"

struct vantore_locating {
    // Indexed by cursor_locate_step. Null until the first shake.
    std::array<wlr_xcursor_manager *, 10> xcursor_steps{};
    bool cursor_locate_on = false;
    bool cursor_locate_shrinking = false;
    int cursor_locate_step = 0; // 0 is the usual size
    int64_t cursor_locate_t0 = 0, cursor_locate_shrink_t0 = 0, cursor_locate_hold_until = 0;
    shake_history shake;
};
