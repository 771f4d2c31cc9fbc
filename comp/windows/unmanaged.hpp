// X11 windows that place themselves: menus, tooltips, and some windows of games. They belong to no workspace
// and lie above all windows.
#pragma once

#include "../fwd.hpp"
#include "../records.hpp"

struct vantore_unmanaged {
    list_link link; // server->xwl_unmanaged
    vantore_server *server = nullptr;
    wlr_xwayland_surface *xwl = nullptr;
    wlr_scene_tree *scene_tree = nullptr; // only while mapped
    listener associate, dissociate, destroy, set_geometry, request_configure, map, unmap,
        set_override_redirect;
};

// The record of a new one, at the head of the list.
vantore_unmanaged *server_new_unmanaged(vantore_server &server, wlr_xwayland_surface *xwl);

// The steps that the window has behind it already, as one that was managed: its surface is there, and maybe
// mapped.
void unmanaged_take_over(vantore_unmanaged &u);

// The surface is that of a shown one which is at least as large as the output under its centre.
bool unmanaged_covers_output(vantore_server &server, const wlr_surface *surface);
// The same of any.
bool any_unmanaged_covers_output(vantore_server &server);
