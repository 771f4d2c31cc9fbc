// Where a window hangs in the scene, and whether its node is enabled. Both follow from the window's state,
// and only this module sets them.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Returns the tree in which the window's node belongs.
wlr_scene_tree *toplevel_parent_tree(const vantore_toplevel &t);

// Whether the window's node should be enabled. The tree above it may still be hidden.
bool toplevel_is_enabled(const vantore_toplevel &t);

// Updates the scene to the window's state. Call this after every change of that state. It also updates the
// windows that share a stack with this one. Does nothing for a window without a node.
void refresh_showing(vantore_toplevel &t);
// The same for the window's dialogs. Call this when the pointer begins or ceases to carry the window.
void refresh_showing_of_dialogs(const vantore_toplevel &t);
// The same for this window only: for a caller that visits the others of its stack as well, or knows that
// nothing has changed for them.
void refresh_showing_alone(vantore_toplevel &t);
