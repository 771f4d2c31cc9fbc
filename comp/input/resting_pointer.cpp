#include "resting_pointer.hpp"

#include "../records.hpp"
#include "../server.hpp"
#include "pointer.hpp"

#include <utility>

// Lives as long as the surface, whatever its role.
struct watched_surface {
    vantore_server *server = nullptr;
    wlr_surface *surface = nullptr;
    pixman_region32_t input{}; // what took input after the last commit
    listener map, unmap, commit, destroy;
};

static void look_again(void *data)
{
    auto &server = *static_cast<vantore_server *>(data);
    server.pointing.look_again = nullptr; // the event loop has removed it
    const bool drags = server.drag.cursor_mode != VANTORE_CURSOR_PASSTHROUGH || server.seat->drag != nullptr;
    if (!drags)
        process_resting_pointer(server);
}

void pointer_look_again(vantore_server &server)
{
    if (server.pointing.look_again != nullptr || server.shutting_down ||
        server.drag.cursor_mode != VANTORE_CURSOR_PASSTHROUGH)
        return;
    wl_event_loop *loop = wl_display_get_event_loop(server.display);
    server.pointing.look_again = wl_event_loop_add_idle(loop, look_again, &server);
}

void scene_node_move(vantore_server &server, wlr_scene_node &node, int x, int y)
{
    if (node.x == x && node.y == y)
        return;
    wlr_scene_node_set_position(&node, x, y);
    pointer_look_again(server);
}

void pointer_look_again_cancel(vantore_server &server)
{
    if (wl_event_source *pending = std::exchange(server.pointing.look_again, nullptr))
        wl_event_source_remove(pending);
}

static void surface_shown_or_hidden(watched_surface &watched)
{
    pointer_look_again(*watched.server);
}

// The region is cut to the surface's size, so it changes with the size too.
static void surface_commit(watched_surface &watched)
{
    pixman_region32_t *now = &watched.surface->input_region;
    if (pixman_region32_equal(&watched.input, now) != 0)
        return;
    pixman_region32_copy(&watched.input, now);
    if (watched.surface->mapped)
        pointer_look_again(*watched.server);
}

// The library unmaps an X11 window's surface only after this.
static void surface_destroy(watched_surface &watched)
{
    if (watched.surface->mapped)
        pointer_look_again(*watched.server);
    pixman_region32_fini(&watched.input);
    delete &watched;
}

void pointer_follow_surface(vantore_server &server, wlr_surface *surface)
{
    auto *watched = new watched_surface{};
    watched->server = &server;
    watched->surface = surface;
    pixman_region32_init(&watched->input);
    auto &events = surface->events;
    listen<&watched_surface::map, surface_shown_or_hidden>(*watched, events.map);
    listen<&watched_surface::unmap, surface_shown_or_hidden>(*watched, events.unmap);
    listen<&watched_surface::commit, surface_commit>(*watched, events.commit);
    listen<&watched_surface::destroy, surface_destroy>(*watched, events.destroy);
}
