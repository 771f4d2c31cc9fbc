// Chooses the mode and adaptive sync of an output when it appears.
#pragma once

#include "../wlr.hpp"

// Puts a mode into the state: the preferred mode or else the first mode that the output accepts. If it
// accepts none, the state gets a custom mode of its current size, or of 1280 by 720 if it has no size.
void output_set_best_mode(wlr_output *output, wlr_output_state *state);

// Switches adaptive sync on if the configuration asks for it. An output that refuses stays as it is, and a
// line is logged.
void vrr_apply_output(wlr_output *output);
