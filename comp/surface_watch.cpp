#include "surface_watch.hpp"

#include "records.hpp"

// One for each surface of the tree.
struct watched_surface {
    list_link link; // of its parent's children
    list_head children; // watched_surface.link
    surface_watch *watch = nullptr;
    listener commit, new_subsurface, destroy;
};

struct surface_watch {
    surface_watch_events events;
    void *data;
    watched_surface *root = nullptr; // null when the surface is gone
};

static watched_surface *watch_tree(surface_watch &watch, wlr_surface &surface, wl_signal &end);

static void forget_tree(watched_surface &watched)
{
    for (auto &child : each<&watched_surface::link>(watched.children))
        forget_tree(child);
    delete &watched;
}

static void surface_commits(watched_surface &watched, const wlr_surface *surface)
{
    if ((surface->current.committed & WLR_SURFACE_STATE_BUFFER) != 0)
        watched.watch->events.new_picture(watched.watch->data);
}

static void subsurface_appears(watched_surface &watched, wlr_subsurface *subsurface)
{
    watched_surface *child = watch_tree(*watched.watch, *subsurface->surface, subsurface->events.destroy);
    wl_list_insert(&watched.children, &child->link);
}

static void surface_goes(watched_surface &watched)
{
    surface_watch &watch = *watched.watch;
    const bool is_root = watch.root == &watched;
    forget_tree(watched);
    if (!is_root)
        return;
    watch.root = nullptr;
    watch.events.gone(watch.data);
}

// Subsurfaces that the parent has not committed yet appear with that commit.
static watched_surface *watch_tree(surface_watch &watch, wlr_surface &surface, wl_signal &end)
{
    auto *watched = new watched_surface{};
    watched->watch = &watch;
    listen<&watched_surface::commit, surface_commits>(*watched, surface.events.commit);
    listen<&watched_surface::new_subsurface, subsurface_appears>(*watched, surface.events.new_subsurface);
    listen<&watched_surface::destroy, surface_goes>(*watched, end);
    for (wl_list *list : {&surface.current.subsurfaces_below, &surface.current.subsurfaces_above}) {
        wlr_subsurface *subsurface = nullptr;
        wl_list_for_each(subsurface, list, current.link) subsurface_appears(*watched, subsurface);
    }
    return watched;
}

surface_watch_handle surface_watch_create(wlr_surface &root, const surface_watch_events &events, void *data)
{
    surface_watch_handle watch{new surface_watch{.events = events, .data = data}};
    watch->root = watch_tree(*watch, root, root.events.destroy);
    return watch;
}

void surface_watch_destroy(surface_watch *watch)
{
    if (watch->root != nullptr)
        forget_tree(*watch->root);
    delete watch;
}
