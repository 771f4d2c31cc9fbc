// When and how an output paints: as late as the picture can still be ready for the next vertical blank, so
// that it shows what clients drew last.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Before the first frame.
void pacing_start(vantore_output &o);
// Before the output or the renderer dies: gives back the measurement that is under way.
void pacing_drop_measurement(vantore_output &o);

// Handlers of the output's events.
void output_frame(vantore_output &o);
void output_present(vantore_output &o, const wlr_output_event_present *event);

// Whether the output's fullscreen window wants its frames at once, torn or not.
bool output_wants_tearing(const vantore_output &o);
