// Finds what lies under a point. All points are in layout coordinates. Surface coordinates are relative to
// the surface's top left corner.
#pragma once

#include "../fwd.hpp"
#include "../presentation/dec_region.hpp"
#include "../wlr.hpp"

struct surface_hit {
    wlr_surface *surface = nullptr; // null over the desktop and over what the compositor draws itself
    double sx = 0, sy = 0;
    vantore_toplevel *frame = nullptr; // the window whose title bar or tabs are there
};

// Returns the topmost scene node that takes input there, or null. The answer is the same as that of the
// scene's own lookup, but this one skips windows that the point can't touch, and one that the caller names.
// nx and ny are relative to the node.
wlr_scene_node *scene_node_at(const vantore_server &server, double lx, double ly, double *nx, double *ny,
                              const vantore_toplevel *except = nullptr);

// Returns the client surface at the point, whoever owns it.
surface_hit surface_at(const vantore_server &server, double lx, double ly);

// Whether this is the surface of an X11 window that places itself. False for null.
bool is_unmanaged(wlr_surface *surface);

// Whether this is a layer surface. Its subsurfaces and popups do not count. False for null.
bool is_layer(wlr_surface *surface);
// Whether this is a panel, a popup or an X11 menu. Title bars, tabs and borders below its pixels can't be
// pointed at. False for null.
bool hides_frames(wlr_surface *surface);

// Returns the window under the point, or null. It ignores a dragged icon. A surface may be hit without a
// window, for example that of a panel.
vantore_toplevel *desktop_toplevel_at(const vantore_server &server, double lx, double ly, surface_hit &hit);

// Returns the part of a title bar that is at the point, where `hit` was found. DEC_NONE without a title bar.
// Never returns DEC_GRIP.
vantore_dec_region dec_region_of(const surface_hit &hit, double lx, double ly);
// Returns the window whose title bar is at the point, and the part of the bar. Null where something lies
// above it.
vantore_toplevel *decoration_at(const vantore_server &server, double lx, double ly,
                                vantore_dec_region &region);

// Returns the member of a stack whose tab is at the point, or null. Looks through `except`, which may be
// null.
vantore_toplevel *tab_at(const vantore_server &server, double lx, double ly,
                         const vantore_toplevel *except = nullptr);

// Returns the window's resize border at the point, as a mask of wlr_edges, or 0 elsewhere. Only floating
// windows have borders.
uint32_t resize_edges_at(const vantore_toplevel &t, double lx, double ly);
