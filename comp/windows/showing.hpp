// Where a window hangs in the scene, and whether it shows there. Both follow from its state, and this is the
// only place that sets them.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// The tree that the window's node belongs in.
wlr_scene_tree *toplevel_parent_tree(const vantore_toplevel &t);

// Whether the window's node is to be enabled. The tree that it hangs in may be hidden all the same.
bool toplevel_is_enabled(const vantore_toplevel &t);

// Brings the scene in line with the window's state: due after each change of it. A window that shares its
// tile with others decides about their nodes as well. Does nothing for a window without a node.
void refresh_showing(vantore_toplevel &t);
