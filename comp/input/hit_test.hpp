// What lies under a point. All points are in layout coordinates; surface coordinates are relative to the
// surface's top left corner.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

struct surface_hit {
    wlr_surface *surface = nullptr; // null over the desktop and over what the compositor draws itself
    double sx = 0, sy = 0;
};

// The topmost scene node that takes input there, or null. The same answer as the scene's own lookup gives,
// without walking the inside of windows that the point can't touch. nx and ny are relative to the node.
wlr_scene_node *scene_node_at(const vantore_server &server, double lx, double ly, double *nx, double *ny);

// The client surface at the point, whoever it belongs to.
surface_hit surface_at(const vantore_server &server, double lx, double ly);

// Whether the point is on a layer surface: presses there are its own affair. Its subsurfaces and popups do
// not count.
bool grabbing_layer_at(const vantore_server &server, double lx, double ly);

// The window under the point or null, looking through a dragged icon. A surface may be hit without a window:
// that of a panel, for example.
vantore_toplevel *desktop_toplevel_at(const vantore_server &server, double lx, double ly, surface_hit &hit);
