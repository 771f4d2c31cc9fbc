// Remembers the area in which a window may take input, so that a lookup at a point can skip windows whose
// area does not contain it.
#pragma once

#include "../fwd.hpp"

// Call this after the window's surface, title bar or tabs changed. A window with a popup or a subsurface may
// take input anywhere.
void note_reach(vantore_toplevel &t);
// Until the next note_reach, lookups assume that the window may take input anywhere.
void forget_reach(vantore_toplevel &t);
