// The return of outputs that were absent; see absent.hpp.
#pragma once

#include "../fwd.hpp"

// Gives a new output back the workspace that it showed. Returns false for an output that was not absent.
bool output_returns(vantore_output &o);

// Call it when the session has returned from another virtual terminal and the backend has announced the
// outputs again. Displays that are missing count as unplugged from then on.
void outputs_returned(vantore_server &server);
