// The library announces a new subsurface only when the parent commits, so we check the request before the
// library handles it. The library does not announce that a client binds the global, so we watch which
// resources the client creates. A new binding has no implementation yet. It gets our dispatcher when the
// client makes its next subsurface, which passes unchecked.

#include "subsurface_guard.hpp"

#include "../records.hpp"
#include "../request_guard.hpp"
#include "../server.hpp"

#include <algorithm>
#include <string_view>

static constexpr int deepest = 64;
static constexpr int most_bindings = 16; // of the global by one client; a program needs only one

enum subcompositor_request : uint32_t { SUBCOMPOSITOR_DESTROY, SUBCOMPOSITOR_GET_SUBSURFACE };

// Lives as long as the client.
struct watched_client {
    wl_client *client = nullptr;
    int bindings = 0;
    bool unguarded = false; // a binding has no dispatcher yet
    listener resource_created, destroy;
};

// Counts the surfaces above this one, and stops when there are too many.
static int depth_of(wlr_surface *surface)
{
    int depth = 0;
    while (depth <= deepest) {
        const wlr_subsurface *sub = wlr_subsurface_try_from_wlr_surface(surface);
        if (sub == nullptr || sub->parent == nullptr)
            break;
        surface = sub->parent;
        depth++;
    }
    return depth;
}

// Counts the generations below a surface, including those that wait for a commit.
static int height_of(const wlr_surface &surface)
{
    int height = 0;
    for (const wl_list *list : {&surface.pending.subsurfaces_above, &surface.pending.subsurfaces_below})
        for (auto &state : each<&wlr_subsurface_parent_state::link>(*list))
            height = std::max(height, 1 + height_of(*owner_of<&wlr_subsurface::pending>(&state)->surface));
    return height;
}

static bool nests_too_deep(const wl_argument *a)
{
    wlr_surface *surface = wlr_surface_from_resource(reinterpret_cast<wl_resource *>(a[1].o));
    wlr_surface *parent = wlr_surface_from_resource(reinterpret_cast<wl_resource *>(a[2].o));
    return depth_of(parent) + 1 + height_of(*surface) > deepest;
}

static int dispatch_subcompositor_request(const void *implementation, void *target, uint32_t opcode,
                                          const wl_message *, wl_argument *a)
{
    const auto &library = *static_cast<const struct wl_subcompositor_interface *>(implementation);
    auto *resource = static_cast<wl_resource *>(target);
    wl_client *client = wl_resource_get_client(resource);
    switch (subcompositor_request(opcode)) {
    case SUBCOMPOSITOR_DESTROY:
        library.destroy(client, resource);
        break;
    case SUBCOMPOSITOR_GET_SUBSURFACE:
        if (nests_too_deep(a))
            wl_resource_post_error(resource, WL_SUBCOMPOSITOR_ERROR_BAD_SURFACE,
                                   "subsurfaces are nested more than %d deep", deepest);
        else
            library.get_subsurface(client, resource, a[0].n, reinterpret_cast<wl_resource *>(a[1].o),
                                   reinterpret_cast<wl_resource *>(a[2].o));
        break;
    }
    return 0;
}

// A binding that already has the dispatcher does not change.
static wl_iterator_result put_dispatcher(wl_resource *resource, void *)
{
    if (std::string_view{wl_resource_get_class(resource)} == "wl_subcompositor")
        put_in_front_of_library(resource, dispatch_subcompositor_request);
    return WL_ITERATOR_CONTINUE;
}

static void note_resource(watched_client &watched, wl_resource *resource)
{
    const std::string_view interface = wl_resource_get_class(resource);
    if (interface == "wl_subcompositor") {
        watched.unguarded = true;
        if (++watched.bindings > most_bindings)
            wl_client_post_implementation_error(watched.client, "wl_subcompositor is bound too often");
    } else if (watched.unguarded && interface == "wl_subsurface") {
        watched.unguarded = false;
        wl_client_for_each_resource(watched.client, put_dispatcher, nullptr);
    }
}

static void forget_client(watched_client &watched)
{
    delete &watched;
}

// libwayland adds listeners on clients through functions. It shows no signal that listen<> could take.
static void watch_client(wl_listener *, void *data)
{
    auto *watched = new watched_client{};
    watched->client = static_cast<wl_client *>(data);
    watched->resource_created.notify = [](wl_listener *raw, void *resource) {
        note_resource(*owner_of<&watched_client::resource_created>(raw),
                      static_cast<wl_resource *>(resource));
    };
    watched->destroy.notify = [](wl_listener *raw, void *) {
        forget_client(*owner_of<&watched_client::destroy>(raw));
    };
    wl_client_add_resource_created_listener(watched->client, &watched->resource_created);
    wl_client_add_destroy_listener(watched->client, &watched->destroy);
}

void guard_subsurface_requests(vantore_server &server)
{
    server.new_client.notify = watch_client;
    wl_display_add_client_created_listener(server.display, &server.new_client);
    server.session_listeners.push_back(&server.new_client);
}
