// Decides when and how an output paints. It paints as late as the picture can still be ready for the next
// vertical blank, so the picture shows what clients drew last.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Call it before the first frame.
void pacing_start(vantore_output &o);
// Gives back the measurement that is under way. Call it before the output or the renderer dies.
void pacing_drop_measurement(vantore_output &o);

// Handle the output's events.
void output_frame(vantore_output &o);
void output_present(vantore_output &o, const wlr_output_event_present *event);

// Tells whether the output's fullscreen window wants its frames shown at once, even if they tear.
bool output_wants_tearing(const vantore_output &o);
