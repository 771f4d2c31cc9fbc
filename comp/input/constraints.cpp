#include "constraints.hpp"

#include "../server.hpp"
#include "../windows/toplevel.hpp"
#include "pointer.hpp"
#include "resting_pointer.hpp"

#include <cmath>
#include <optional>

static const char *type_name(const wlr_pointer_constraint_v1 &constraint)
{
    return constraint.type == WLR_POINTER_CONSTRAINT_V1_LOCKED ? "locked" : "confined";
}

struct layout_point {
    double x, y;
};

// Returns the layout position of a window's main surface, which is larger than the content when the client
// draws shadows. Returns nothing for a surface that belongs to no window.
static std::optional<layout_point> constraint_surface_origin(vantore_server &server,
                                                             const wlr_surface *surface)
{
    for (const auto &t : each<&vantore_toplevel::link>(server.toplevels)) {
        if (tl_surface(t) != surface)
            continue;
        const wlr_scene_node &node = t.scene_tree->node;
        const wlr_box geometry = tl_get_geometry(t);
        return layout_point{.x = double(node.x - geometry.x), .y = double(node.y - geometry.y)};
    }
    return {};
}

static void constraint_warp_to_hint(vantore_server &server, const wlr_pointer_constraint_v1 &constraint)
{
    const auto &hint = constraint.current.cursor_hint;
    if (constraint.type != WLR_POINTER_CONSTRAINT_V1_LOCKED || !hint.enabled)
        return;
    const auto origin = constraint_surface_origin(server, constraint.surface);
    if (!origin)
        return;
    wlr_cursor_warp(server.cursor, nullptr, origin->x + hint.x, origin->y + hint.y);
    pointer_look_again(server);
}

static wlr_pointer_constraint_v1 *constraint_of(const vantore_server &server, wlr_surface *surface)
{
    if (surface == nullptr || server.pointer_constraints == nullptr)
        return nullptr;
    return wlr_pointer_constraints_v1_constraint_for_surface(server.pointer_constraints, surface,
                                                             server.seat);
}

bool has_constraint(const vantore_server &server, wlr_surface *surface)
{
    return constraint_of(server, surface) != nullptr;
}

void constrain_to_surface(vantore_server &server, wlr_surface *surface)
{
    // The overview has the pointer, and looks again when it gives it back.
    wlr_pointer_constraint_v1 *c = server.overview.active ? nullptr : constraint_of(server, surface);
    wlr_pointer_constraint_v1 *previous = server.active_constraint;
    if (c == previous)
        return;
    pointer_look_again(server);
    if (previous != nullptr) {
        wlr_log(WLR_INFO, "constraint: deactivate (%s)", type_name(*previous));
        constraint_warp_to_hint(server, *previous);
        wlr_pointer_constraint_v1_send_deactivated(previous); // destroys a one-shot constraint
    }
    server.active_constraint = c;
    if (c == nullptr)
        return;
    wlr_log(WLR_INFO, "constraint: activate (%s) cursor=%.0f,%.0f", type_name(*c), server.cursor->x,
            server.cursor->y);
    wlr_pointer_constraint_v1_send_activated(c);
}

static void constraint_handle_destroy(vantore_constraint &record)
{
    vantore_server &server = *record.server;
    const bool active = server.active_constraint == record.constraint;
    wlr_log(WLR_INFO, "constraint: destroyed (%s, was %s)", type_name(*record.constraint),
            active ? "ACTIVE" : "inactive");
    if (active) {
        constraint_warp_to_hint(server, *record.constraint);
        server.active_constraint = nullptr;
        pointer_look_again(server);
    }
    delete &record;
}

// Otherwise a window that is gone would hold the pointer until another one takes the focus.
static void constraint_handle_unmap(vantore_constraint &record)
{
    if (record.server->active_constraint == record.constraint)
        constrain_to_surface(*record.server, nullptr); // a one-shot constraint's record is deleted here
}

void server_new_constraint(vantore_server &server, wlr_pointer_constraint_v1 *constraint)
{
    auto *record = new vantore_constraint{};
    record->server = &server;
    record->constraint = constraint;
    wlr_surface *surface = constraint->surface;
    listen<&vantore_constraint::unmap, constraint_handle_unmap>(*record, surface->events.unmap);
    listen<&vantore_constraint::destroy, constraint_handle_destroy>(*record, constraint->events.destroy);
    const bool keyboard = server.seat->keyboard_state.focused_surface == surface;
    const bool pointer = server.seat->pointer_state.focused_surface == surface;
    wlr_log(WLR_INFO, "constraint: new (%s) kb-focus=%d ptr-focus=%d%s", type_name(*constraint),
            int(keyboard), int(pointer), keyboard ? " — activating" : "");
    if (keyboard)
        constrain_to_surface(server, surface);
}

bool constrains_pointer(const vantore_toplevel &t)
{
    const wlr_pointer_constraint_v1 *active = t.server->active_constraint;
    return active != nullptr && active->surface == tl_surface(t);
}

bool pointer_is_constrained(vantore_server &server)
{
    return server.active_constraint != nullptr &&
           constraint_surface_origin(server, server.active_constraint->surface).has_value();
}

bool pointer_is_locked(const vantore_server &server)
{
    return server.active_constraint != nullptr &&
           server.active_constraint->type == WLR_POINTER_CONSTRAINT_V1_LOCKED;
}

// A constraint without a region covers the part of its surface that takes input. The library fills that in
// only at the next commit.
static const pixman_region32_t &region_of(const wlr_pointer_constraint_v1 &constraint)
{
    const bool has_region = pixman_region32_not_empty(&constraint.region) != 0 ||
                            pixman_region32_not_empty(&constraint.current.region) != 0;
    return has_region ? constraint.region : constraint.surface->input_region;
}

bool constraint_holds_pointer(vantore_server &server)
{
    if (server.active_constraint == nullptr || pointer_is_locked(server))
        return server.active_constraint != nullptr;
    const wlr_pointer_constraint_v1 &constraint = *server.active_constraint;
    const auto origin = constraint_surface_origin(server, constraint.surface);
    return origin.has_value() && pixman_region32_contains_point(
                                     &region_of(constraint), int(std::floor(server.cursor->x - origin->x)),
                                     int(std::floor(server.cursor->y - origin->y)), nullptr) != 0;
}

// A pointer outside the region moves freely until it is inside. The region may extend beyond the screen.
static bool confine_motion(vantore_server &server, const wlr_pointer_constraint_v1 &constraint,
                           const wlr_pointer_motion_event &event)
{
    const auto origin = constraint_surface_origin(server, constraint.surface);
    if (!origin.has_value())
        return false;
    const double sx = server.cursor->x - origin->x, sy = server.cursor->y - origin->y;
    double nx = 0, ny = 0;
    if (!wlr_region_confine(&region_of(constraint), sx, sy, sx + event.delta_x, sy + event.delta_y, &nx, &ny))
        return false;
    wlr_cursor_warp_closest(server.cursor, &event.pointer->base, origin->x + nx, origin->y + ny);
    process_cursor_motion(server, event.time_msec);
    return true;
}

bool constrain_motion(vantore_server &server, const wlr_pointer_motion_event &event)
{
    if (server.active_constraint == nullptr)
        return false;
    return pointer_is_locked(server) || confine_motion(server, *server.active_constraint, event);
}
