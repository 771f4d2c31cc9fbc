// Tells of the new pictures of a surface and of all its subsurfaces.
#pragma once

#include "handles.hpp"

struct surface_watch;

struct surface_watch_events {
    // The surface or one of its subsurfaces shows a new buffer. A commit without one is not told, even if it
    // moves a subsurface. May end the watch.
    void (*new_picture)(void *data);
    // The surface is being destroyed, and the watch tells nothing more. May end the watch.
    void (*gone)(void *data);
};

void surface_watch_destroy(surface_watch *watch);
using surface_watch_handle = handle<surface_watch, surface_watch_destroy>;

// Watches until the handle is reset. `data` is handed to the functions and must live as long as the watch.
surface_watch_handle surface_watch_create(wlr_surface &root, const surface_watch_events &events, void *data);
