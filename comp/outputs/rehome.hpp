// Brings workspaces and the pointer back onto outputs after outputs have come, gone or changed.
#pragma once

#include "../fwd.hpp"

// Gives a workspace to every output that shows the desktop and has none. Workspaces with windows but without
// an output come first.
void rehome_outputs(vantore_server &server);

// Moves the pointer to the nearest output that shows the desktop if it lies on none.
void cursor_ensure_on_output(vantore_server &server);

// Moves the pointer from an output that is turned off or only mirrors something to the nearest point of one
// that shows the desktop. Both keep their place in the layout, but the pointer is of no use there. Does
// nothing if no output shows the desktop.
void clamp_cursor_off_mirror(vantore_server &server);

// Shows the workspaces that outputs have. Windows that are put away come back, except while outputs are
// absent.
void show_workspaces(vantore_server &server);

// Gives an output the workspace that was last shown on it, else the first one that waits for no other output.
void hand_workspace_to(vantore_output &o);

// Call it after outputs were lit: those that have no workspace get one.
void find_homes(vantore_server &server);

// Call it when workspaces have found their outputs: the keyboard and the pointer go where they can be seen,
// and programs are told.
void settle_outputs(vantore_server &server);
