#include "wayland_constraints.hpp"

#include "pointer-constraints-unstable-v1-client-protocol.h"
#include "relative-pointer-unstable-v1-client-protocol.h"

#include <format>
#include <utility>
#include <wayland-client.h>

namespace test
{

struct constraint_events {
    static void locked(void *data, zwp_locked_pointer_v1 *) { static_cast<locked_pointer *>(data)->locks++; }
    static void unlocked(void *data, zwp_locked_pointer_v1 *)
    {
        static_cast<locked_pointer *>(data)->unlocks++;
    }
    static void confined(void *data, zwp_confined_pointer_v1 *)
    {
        static_cast<confined_pointer *>(data)->confines++;
    }
    static void unconfined(void *data, zwp_confined_pointer_v1 *)
    {
        static_cast<confined_pointer *>(data)->releases++;
    }
    static void moved(void *data, zwp_relative_pointer_v1 *, uint32_t time_high, uint32_t time_low,
                      wl_fixed_t dx, wl_fixed_t dy, wl_fixed_t raw_dx, wl_fixed_t raw_dy)
    {
        static_cast<relative_pointer *>(data)->events.push_back(std::format(
            "{},{} raw {},{} at {}", wl_fixed_to_double(dx), wl_fixed_to_double(dy),
            wl_fixed_to_double(raw_dx), wl_fixed_to_double(raw_dy), (uint64_t{time_high} << 32) + time_low));
    }
};

static zwp_pointer_constraints_v1 *bind_manager(const seat &s)
{
    return static_cast<zwp_pointer_constraints_v1 *>(s.owner().bind(zwp_pointer_constraints_v1_interface, 1));
}

locked_pointer::locked_pointer(seat &s, wl_surface *surface, constraint_life life)
    : manager(bind_manager(s)), object(zwp_pointer_constraints_v1_lock_pointer(
                                    manager.get(), surface, s.get_pointer(), nullptr, uint32_t(life)))
{
    static constexpr zwp_locked_pointer_v1_listener listener{
        .locked = constraint_events::locked,
        .unlocked = constraint_events::unlocked,
    };
    zwp_locked_pointer_v1_add_listener(object.get(), &listener, this);
}

locked_pointer::~locked_pointer() = default;

void locked_pointer::hint(double sx, double sy)
{
    zwp_locked_pointer_v1_set_cursor_position_hint(object.get(), wl_fixed_from_double(sx),
                                                   wl_fixed_from_double(sy));
}

void locked_pointer::destroy()
{
    object.reset();
}

static zwp_confined_pointer_v1 *confine(const seat &s, zwp_pointer_constraints_v1 *manager,
                                        wl_surface *surface, const std::optional<region_box> &box)
{
    wl_region *region = nullptr;
    if (box) {
        region = wl_compositor_create_region(s.owner().surfaces());
        wl_region_add(region, box->x, box->y, box->width, box->height);
    }
    zwp_confined_pointer_v1 *made = zwp_pointer_constraints_v1_confine_pointer(
        manager, surface, s.get_pointer(), region, ZWP_POINTER_CONSTRAINTS_V1_LIFETIME_PERSISTENT);
    if (region != nullptr)
        wl_region_destroy(region);
    return made;
}

confined_pointer::confined_pointer(seat &s, wl_surface *surface, std::optional<region_box> region)
    : manager(bind_manager(s)), object(confine(s, manager.get(), surface, region))
{
    static constexpr zwp_confined_pointer_v1_listener listener{
        .confined = constraint_events::confined,
        .unconfined = constraint_events::unconfined,
    };
    zwp_confined_pointer_v1_add_listener(object.get(), &listener, this);
}

confined_pointer::~confined_pointer() = default;

relative_pointer::relative_pointer(seat &s)
    : manager(static_cast<zwp_relative_pointer_manager_v1 *>(
          s.owner().bind(zwp_relative_pointer_manager_v1_interface, 1))),
      object(zwp_relative_pointer_manager_v1_get_relative_pointer(manager.get(), s.get_pointer()))
{
    static constexpr zwp_relative_pointer_v1_listener listener{.relative_motion = constraint_events::moved};
    zwp_relative_pointer_v1_add_listener(object.get(), &listener, this);
}

relative_pointer::~relative_pointer() = default;

std::vector<std::string> relative_pointer::take()
{
    return std::exchange(events, {});
}

} // namespace test
