// What lies under a point. All points are in layout coordinates; surface coordinates are relative to the
// surface's top left corner.
#pragma once

#include "../fwd.hpp"
#include "../presentation/dec_region.hpp"
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

// An X11 window that places itself.
bool is_unmanaged(wlr_surface *surface);

// A layer surface itself, not its subsurfaces and popups. Null is none.
bool is_layer(wlr_surface *surface);
// A panel, a popup or an X11 menu: the title bars, tabs and borders below its pixels can't be pointed at.
// Null is none.
bool hides_frames(wlr_surface *surface);

// Whether the point is on a layer surface: presses there are its own affair. Its subsurfaces and popups do
// not count.
bool grabbing_layer_at(const vantore_server &server, double lx, double ly);

// The window under the point or null, looking through a dragged icon. A surface may be hit without a window:
// that of a panel, for example.
vantore_toplevel *desktop_toplevel_at(const vantore_server &server, double lx, double ly, surface_hit &hit);

// The window whose title bar is at the point, with the part of it; null where something lies above it. Never
// answers DEC_GRIP.
vantore_toplevel *decoration_at(const vantore_server &server, double lx, double ly,
                                vantore_dec_region &region);
// The same without a look at what lies above all windows, for a caller who knows that there is none at the
// point.
vantore_toplevel *window_decoration_at(const vantore_server &server, double lx, double ly,
                                       vantore_dec_region &region);

// The resize border of a floating window at the point, a mask of wlr_edges; 0 elsewhere.
uint32_t resize_edges_at(const vantore_toplevel &t, double lx, double ly);
