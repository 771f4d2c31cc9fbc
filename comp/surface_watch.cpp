#include "surface_watch.hpp"

#include "records.hpp"

// One for each surface of the tree.
struct watched_surface {
    list_link link; // surface_watch.surfaces
    surface_watch *watch = nullptr;
    bool is_root = false;
    listener commit, new_subsurface, destroy;
};

struct surface_watch {
    surface_watch_events events;
    void *data;
    list_head surfaces; // watched_surface.link
};

static void watch_tree(surface_watch &watch, wlr_surface &surface, wl_signal &end);

static void surface_commits(watched_surface &watched, const wlr_surface *surface)
{
    if ((surface->current.committed & WLR_SURFACE_STATE_BUFFER) != 0)
        watched.watch->events.new_picture(watched.watch->data);
}

static void subsurface_appears(watched_surface &watched, wlr_subsurface *subsurface)
{
    watch_tree(*watched.watch, *subsurface->surface, subsurface->events.destroy);
}

static void forget_surfaces(surface_watch &watch)
{
    for (auto &watched : each<&watched_surface::link>(watch.surfaces))
        delete &watched;
}

static void surface_goes(watched_surface &watched)
{
    surface_watch &watch = *watched.watch;
    if (!watched.is_root) {
        delete &watched;
        return;
    }
    forget_surfaces(watch);
    watch.events.gone(watch.data);
}

// Subsurfaces that the parent has not committed yet appear with that commit.
static void watch_tree(surface_watch &watch, wlr_surface &surface, wl_signal &end)
{
    auto *watched = new watched_surface{};
    watched->watch = &watch;
    watched->is_root = wl_list_empty(&watch.surfaces) != 0;
    wl_list_insert(&watch.surfaces, &watched->link);
    listen<&watched_surface::commit, surface_commits>(*watched, surface.events.commit);
    listen<&watched_surface::new_subsurface, subsurface_appears>(*watched, surface.events.new_subsurface);
    listen<&watched_surface::destroy, surface_goes>(*watched, end);
    for (wl_list *list : {&surface.current.subsurfaces_below, &surface.current.subsurfaces_above}) {
        wlr_subsurface *subsurface = nullptr;
        wl_list_for_each(subsurface, list, current.link)
            watch_tree(watch, *subsurface->surface, subsurface->events.destroy);
    }
}

surface_watch_handle surface_watch_create(wlr_surface &root, const surface_watch_events &events, void *data)
{
    surface_watch_handle watch{new surface_watch{.events = events, .data = data, .surfaces = {}}};
    watch_tree(*watch, root, root.events.destroy);
    return watch;
}

void surface_watch_destroy(surface_watch *watch)
{
    forget_surfaces(*watch);
    delete watch;
}
