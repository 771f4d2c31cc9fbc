// The library announces a new subsurface only when the parent commits, so we check the request before the
// library handles it.

#include "subsurface_guard.hpp"

#include "../records.hpp"

#include <algorithm>

static constexpr int deepest = 64;

enum subcompositor_request : uint32_t { SUBCOMPOSITOR_DESTROY, SUBCOMPOSITOR_GET_SUBSURFACE };

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

static_assert(sizeof(struct wl_subcompositor_interface) == 2 * sizeof(void (*)()),
              "list the new request below");

int dispatch_subcompositor_request(const void *implementation, void *target, uint32_t opcode,
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
