// The modes that the user can be in: a drag, the Mouse Tiler, a held modifier, the window
// switcher, the overview, a highlighted button. Each mode is a row of one table. It remembers a window or an
// output by its id, or forgets it here when it goes.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Ends every mode and leaves windows where they are. Call this when a lock begins or the session ends.
void end_modes(vantore_server &server);

// Call this before a window is unmapped. Afterwards, no mode refers to it.
void window_leaves(vantore_toplevel &t);

// Call this after a window was unmapped, when others have taken its place.
void window_left(vantore_server &server);

// Call this before an output goes. Afterwards, no mode refers to it.
void output_leaves(vantore_server &server, const wlr_output *output);
