// What the end of a drag does with the window.
#pragma once

#include "../fwd.hpp"

// The button that held the drag is up: the drag ends, and a window that was moved lands where it was dropped.
// Does nothing without a drag.
void finish_drag(vantore_server &server);
