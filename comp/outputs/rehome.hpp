// Brings workspaces and the pointer back onto outputs after outputs have come, gone or changed.
#pragma once

#include "../fwd.hpp"

// Gives a workspace to every enabled output that has none. Workspaces with windows but without an output come
// first.
void rehome_outputs(vantore_server &server);

// Moves the pointer to the nearest enabled output if it lies on none.
void cursor_ensure_on_output(vantore_server &server);

// Moves the pointer from an output that is turned off to the nearest point of one that is lit. Such an output
// stays in the layout, but nobody would see the pointer there. Does nothing while all are dark.
void keep_cursor_on_lit_outputs(vantore_server &server);

// Gives an output the workspace that was last shown on it, else the first one that waits for no other output.
void hand_workspace_to(vantore_output &o);

// Call it after outputs were lit: those that have no workspace get one.
void find_homes(vantore_server &server);

// Call it when workspaces have found their outputs: the keyboard and the pointer go where they can be seen,
// and programs are told.
void settle_outputs(vantore_server &server);
