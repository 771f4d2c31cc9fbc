// Moves outputs within the layout.
#pragma once

#include "../fwd.hpp"

// Puts the output's top left corner there, in layout coordinates. All other outputs stay where they are.
void move_output(const vantore_output &o, int x, int y);

// Moves an output the shortest way out of the others that are lit.
void deoverlap_moved(vantore_output &moved);

// Moves all outputs, and the windows with them, so that none begins left of or above 0, 0.
void normalize_output_layout(vantore_server &server);
