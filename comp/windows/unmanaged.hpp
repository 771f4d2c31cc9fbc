// X11 windows that place themselves: menus, tooltips, and some windows of games. They belong to no workspace
// and are drawn above all windows.
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

// Makes the record of a new unmanaged window and puts it at the head of server.xwl_unmanaged.
vantore_unmanaged *server_new_unmanaged(vantore_server &server, wlr_xwayland_surface *xwl);

// Call this for a window that was managed before. It may already have a surface, and the surface may be
// mapped, so this makes up for the signals that the new record missed.
void unmanaged_take_over(vantore_unmanaged &u);

// Whether the surface belongs to a shown unmanaged window that is at least as large as the output under its
// centre.
bool unmanaged_covers_output(vantore_server &server, const wlr_surface *surface);
// Whether any shown unmanaged window is that large.
bool any_unmanaged_covers_output(vantore_server &server);
