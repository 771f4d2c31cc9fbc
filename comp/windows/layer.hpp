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
    listener map, unmap, commit, destroy;
    // The size that the client was told last; 0 when it waits for one. A configure with the same size would
    // make it draw and commit again, and so on for ever.
    int told_width = 0, told_height = 0;
};

// The desktop's own panel: by its namespace, and while it is on the top layer.
bool is_panel(const vantore_layer_surface &l);

// Handler of the shell's new_surface event.
void server_new_layer_surface(vantore_server &server, wlr_layer_surface_v1 *layer_surface);

// Places the output's layer surfaces and works out its usable box, in layout coordinates; arranges its
// workspace where that box has changed. Does nothing for null or a disabled output.
void arrange_layers(vantore_server &server, wlr_output *output);

// The same for every output: one that comes, goes or changes its size moves its neighbours.
void arrange_all_layers(vantore_server &server);

// The output dies: its layer surfaces are closed, and none of them reaches for it any more.
void layer_surfaces_of_output_gone(vantore_server &server, const wlr_output *output);
