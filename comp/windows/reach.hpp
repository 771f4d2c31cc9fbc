// Remembers the area in which a window may take input, so that a lookup can skip windows that the point can't
// touch.
#pragma once

#include "../fwd.hpp"

// Call this after the window's surface, title bar or tabs changed. A window with a popup or a subsurface may
// take input anywhere.
void note_reach(vantore_toplevel &t);
// Lets the window take input anywhere until the next note_reach.
void forget_reach(vantore_toplevel &t);
