#include "wayland_gestures.hpp"

#include "pointer-gestures-unstable-v1-client-protocol.h"

#include <algorithm>
#include <format>
#include <utility>
#include <wayland-client.h>

namespace test
{

struct gesture_events {
    static void note(void *data, std::string text)
    {
        static_cast<pointer_gestures *>(data)->events.push_back(std::move(text));
    }
    static void begin(void *data, const char *what, wl_surface *surface, uint32_t fingers)
    {
        const client &owner = static_cast<pointer_gestures *>(data)->of->owner();
        note(data, std::format("{} begin {} {}", what, owner.name_of(surface), fingers));
    }
    static void end(void *data, const char *what, int32_t cancelled)
    {
        note(data, std::format("{} {}", what, cancelled != 0 ? "cancelled" : "end"));
    }
    static std::string by(wl_fixed_t dx, wl_fixed_t dy)
    {
        return std::format("{},{}", wl_fixed_to_double(dx), wl_fixed_to_double(dy));
    }

    static void swipe_begin(void *data, zwp_pointer_gesture_swipe_v1 *, uint32_t, uint32_t,
                            wl_surface *surface, uint32_t fingers)
    {
        begin(data, "swipe", surface, fingers);
    }
    static void swipe_update(void *data, zwp_pointer_gesture_swipe_v1 *, uint32_t, wl_fixed_t dx,
                             wl_fixed_t dy)
    {
        note(data, "swipe update " + by(dx, dy));
    }
    static void swipe_end(void *data, zwp_pointer_gesture_swipe_v1 *, uint32_t, uint32_t, int32_t cancelled)
    {
        end(data, "swipe", cancelled);
    }
    static void pinch_begin(void *data, zwp_pointer_gesture_pinch_v1 *, uint32_t, uint32_t,
                            wl_surface *surface, uint32_t fingers)
    {
        begin(data, "pinch", surface, fingers);
    }
    static void pinch_update(void *data, zwp_pointer_gesture_pinch_v1 *, uint32_t, wl_fixed_t dx,
                             wl_fixed_t dy, wl_fixed_t scale, wl_fixed_t rotation)
    {
        note(data, std::format("pinch update {} scale {} turned {}", by(dx, dy), wl_fixed_to_double(scale),
                               wl_fixed_to_double(rotation)));
    }
    static void pinch_end(void *data, zwp_pointer_gesture_pinch_v1 *, uint32_t, uint32_t, int32_t cancelled)
    {
        end(data, "pinch", cancelled);
    }
    static void hold_begin(void *data, zwp_pointer_gesture_hold_v1 *, uint32_t, uint32_t, wl_surface *surface,
                           uint32_t fingers)
    {
        begin(data, "hold", surface, fingers);
    }
    static void hold_end(void *data, zwp_pointer_gesture_hold_v1 *, uint32_t, uint32_t, int32_t cancelled)
    {
        end(data, "hold", cancelled);
    }
};

static constexpr zwp_pointer_gesture_swipe_v1_listener swipe_listener{
    .begin = gesture_events::swipe_begin,
    .update = gesture_events::swipe_update,
    .end = gesture_events::swipe_end,
};

static constexpr zwp_pointer_gesture_pinch_v1_listener pinch_listener{
    .begin = gesture_events::pinch_begin,
    .update = gesture_events::pinch_update,
    .end = gesture_events::pinch_end,
};

static constexpr zwp_pointer_gesture_hold_v1_listener hold_listener{
    .begin = gesture_events::hold_begin,
    .end = gesture_events::hold_end,
};

pointer_gestures::pointer_gestures(seat &s)
    : of(&s),
      manager(static_cast<zwp_pointer_gestures_v1 *>(s.owner().bind(zwp_pointer_gestures_v1_interface, 3))),
      swipe(zwp_pointer_gestures_v1_get_swipe_gesture(manager.get(), s.get_pointer())),
      pinch(zwp_pointer_gestures_v1_get_pinch_gesture(manager.get(), s.get_pointer())),
      hold(zwp_pointer_gestures_v1_get_hold_gesture(manager.get(), s.get_pointer()))
{
    zwp_pointer_gesture_swipe_v1_add_listener(swipe.get(), &swipe_listener, this);
    zwp_pointer_gesture_pinch_v1_add_listener(pinch.get(), &pinch_listener, this);
    zwp_pointer_gesture_hold_v1_add_listener(hold.get(), &hold_listener, this);
}

pointer_gestures::~pointer_gestures() = default;

std::vector<std::string> pointer_gestures::take()
{
    return std::exchange(events, {});
}

bool pointer_gestures::heard(const std::string &event) const
{
    return std::ranges::contains(events, event);
}

} // namespace test
