// The usable area of an output: what is left of it for windows.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Works out the output's usable box again, in layout coordinates, and arranges its workspace where the box
// has changed. Does nothing for a disabled output.
void arrange_layers(vantore_output &o);

// The same for every output: one that comes, goes or changes its size moves its neighbours.
void arrange_all_layers(vantore_server &server);

// The usable box of the output at a layout point; all zero where there is no output.
wlr_box output_usable_at(vantore_server &server, double lx, double ly);
wlr_box usable_at_cursor(vantore_server &server);
