// What the user can be in the middle of: a drag, the Mouse Tiler, a held modifier, a highlighted button. Each
// such mode is a row of one table. What a mode remembers from one event to the next is an id, or it is
// forgotten here when the window or the output goes.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Ends every mode and leaves everything where it is: the lock begins, or the session ends.
void end_modes(vantore_server &server);

// The window is about to be unmapped: no mode holds on to it afterwards.
void window_leaves(vantore_toplevel &t);

// The same for an output that goes.
void output_leaves(vantore_server &server, const wlr_output *output);
