// What of a window's state decides on its effects.
#pragma once

#include "../fwd.hpp"
#include "../presentation/effect_plan.hpp"

effect_state effect_state_of(const vantore_toplevel &t);
