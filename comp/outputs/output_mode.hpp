// Choosing what an output shows itself with when it appears.
#pragma once

#include "../wlr.hpp"

// Puts into the state the preferred mode, else the first mode that the output accepts, else a custom mode
// of its current size (1280 by 720 where it has none).
void output_set_best_mode(wlr_output *output, wlr_output_state *state);

// Switches adaptive sync on where the configuration asks for it. An output that refuses stays as it is,
// with a log line.
void vrr_apply_output(wlr_output *output);
