// Brings workspaces and the pointer back onto outputs after outputs have come, gone or changed.
#pragma once

#include "../fwd.hpp"

// Gives a workspace to every enabled output that has none. Workspaces with windows but without an output come
// first.
void rehome_outputs(vantore_server &server);

// Moves the pointer to the nearest enabled output if it lies on none.
void cursor_ensure_on_output(vantore_server &server);
