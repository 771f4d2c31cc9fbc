// The modes that the user can be in: a drag, the Mouse Tiler, a held modifier, a highlighted button. Each
// mode is a row of one table. A mode remembers a window or output by its id, or forgets it here when it goes.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Ends every mode and leaves everything where it is, when a lock begins or the session ends.
void end_modes(vantore_server &server);

// Call this before a window is unmapped. Afterwards, no mode refers to it.
void window_leaves(vantore_toplevel &t);

// Does the same for an output that goes.
void output_leaves(vantore_server &server, const wlr_output *output);
