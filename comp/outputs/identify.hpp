// A badge with its name on each output, so that a user of display settings can tell the monitors apart.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

#include <string>

// Returns the line below the name: the model, if there is one, the mode in pixels, and its rate in Hz.
std::string identify_subtitle(const char *model, int width, int height, int refresh_mhz);

// Shows the badges on all enabled outputs for 1 to 30 seconds. Replaces badges that are shown.
void identify_show(vantore_server &server, long seconds);
void identify_clear(vantore_server &server);
// Removes the badge of an output that goes.
void identify_output_leaves(vantore_output &o);
