// The order of windows in the scene.
#pragma once

#include "../fwd.hpp"

// Puts the window on top of the tree that it hangs in, and its dialogs of that tree above it. X11 windows are
// raised in the X server's order as well.
void raise_with_dialogs(vantore_toplevel &t);

// Raises only the dialogs, for a window that has come to the top of its tree by other means.
void raise_dialogs(vantore_toplevel &t);
