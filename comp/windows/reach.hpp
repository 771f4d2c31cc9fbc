// How far a window takes input, kept so that a lookup need not look into windows that the point can't touch.
#pragma once

#include "../fwd.hpp"

// Something of the window that takes input has changed: its surface, its title bar or its tabs. A window that
// has a popup or a subsurface by now may take input anywhere.
void note_reach(vantore_toplevel &t);
// Until the next note_reach the window may take input anywhere.
void forget_reach(vantore_toplevel &t);
