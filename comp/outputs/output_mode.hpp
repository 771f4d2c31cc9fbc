// Chooses the mode and adaptive sync of an output when it appears.
#pragma once

#include "../wlr.hpp"

// Puts a mode into the state: the preferred mode or else the first mode that the output accepts. If it
// accepts none, the state gets a custom mode of its current size, or of 1280 by 720 if it has no size.
void output_set_best_mode(wlr_output *output, wlr_output_state *state);

// Switches the output on in its best mode, with adaptive sync if the configuration asks for it. Returns false
// if the output refuses, which is logged.
bool output_light_up(wlr_output *output);

// Gives an output that stays dark for now the size that it will have when it is lit. The library sets a mode
// only together with switching the output on, but the layout and other programs need the size before.
void output_foresee_size(wlr_output *output);

// Switches adaptive sync on if the configuration asks for it. An output that refuses stays as it is, and a
// line is logged.
void vrr_apply_output(wlr_output *output);
