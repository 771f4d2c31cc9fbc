// Bringing workspaces and the pointer back onto outputs after outputs have come, gone or changed.
#pragma once

#include "../fwd.hpp"

// Gives every enabled output without a workspace one: orphans with windows first.
void rehome_outputs(vantore_server &server);

// Warps the pointer to the nearest enabled output when it lies on none.
void cursor_ensure_on_output(vantore_server &server);
