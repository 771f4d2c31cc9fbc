// Decides what the end of a drag does with the window.
#pragma once

#include "../fwd.hpp"

// Ends the drag after its button was released. A window that was moved lands where it was dropped. Does
// nothing without a drag.
void finish_drag(vantore_server &server);
