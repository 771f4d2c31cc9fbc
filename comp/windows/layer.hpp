// Panels, docks, wallpapers and overlays of wlr-layer-shell, and what they leave of an output for windows.
#pragma once

#include "../fwd.hpp"
#include "../records.hpp"
#include "../scene_tag.hpp"

struct vantore_layer_surface {
    scene_tag tag{scene_owner::layer_surface}; // the data of its tree's node
    list_link link; // server->layer_surfaces
    vantore_server *server = nullptr;
    wlr_layer_surface_v1 *layer_surface = nullptr; // its data points back
    wlr_scene_layer_surface_v1 *scene = nullptr;
    listener map, unmap, commit, new_popup, destroy;
    wlr_scene_tree *popups = nullptr; // at the surface's place; null until it has a popup
    listener popups_destroy;
    // The size that the last configure told the client, or 0 when the client still waits for a configure. A
    // repeated configure of the same size would make the client draw and commit again, without end.
    int told_width = 0, told_height = 0;
};

// Whether this is the desktop's own panel. Its namespace tells, and it counts only while it is on the top
// layer.
bool is_panel(const vantore_layer_surface &l);

// Handles the shell's new_surface event.
void server_new_layer_surface(vantore_server &server, wlr_layer_surface_v1 *layer_surface);

// Places the output's layer surfaces and computes its usable box, in layout coordinates. Arranges the
// output's workspace if that box changed. Does nothing for null or a disabled output.
void arrange_layers(vantore_server &server, wlr_output *output);

// Does the same for every output, because an output that comes, goes or changes its size moves its
// neighbours.
void arrange_all_layers(vantore_server &server);

// Closes the layer surfaces of an output that is being destroyed, and clears their pointers to it.
void layer_surfaces_of_output_gone(vantore_server &server, const wlr_output *output);
