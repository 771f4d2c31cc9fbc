#include "wayland_tablet.hpp"

#include "tablet-v2-client-protocol.h"

#include <algorithm>
#include <format>
#include <utility>
#include <wayland-client.h>

namespace test
{

struct tablet_events {
    static tablet_seat &self(void *data) { return *static_cast<tablet_seat *>(data); }

    template <class... Arguments>
    static void note(void *data, std::format_string<Arguments...> text, Arguments &&...arguments)
    {
        self(data).events.push_back(std::format(text, std::forward<Arguments>(arguments)...));
    }

    static void tablet_name(void *data, zwp_tablet_v2 *, const char *name) { note(data, "tablet {}", name); }
    static void tablet_removed(void *data, zwp_tablet_v2 *tablet)
    {
        note(data, "tablet removed");
        self(data).tablets.remove_if([&](const auto &other) { return other.get() == tablet; });
    }

    static void tool_done(void *data, zwp_tablet_tool_v2 *) { note(data, "pen"); }
    static void tool_removed(void *data, zwp_tablet_tool_v2 *tool)
    {
        note(data, "pen removed");
        self(data).tools.remove_if([&](const auto &other) { return other.get() == tool; });
    }
    static void proximity_in(void *data, zwp_tablet_tool_v2 *, uint32_t serial, zwp_tablet_v2 *,
                             wl_surface *surface)
    {
        self(data).proximity = serial;
        note(data, "in {}", self(data).of->owner().name_of(surface));
    }
    static void proximity_out(void *data, zwp_tablet_tool_v2 *) { note(data, "out"); }
    static void down(void *data, zwp_tablet_tool_v2 *, uint32_t) { note(data, "down"); }
    static void up(void *data, zwp_tablet_tool_v2 *) { note(data, "up"); }
    static void motion(void *data, zwp_tablet_tool_v2 *, wl_fixed_t x, wl_fixed_t y)
    {
        note(data, "motion {},{}", wl_fixed_to_double(x), wl_fixed_to_double(y));
    }
    static void pressure(void *data, zwp_tablet_tool_v2 *, uint32_t value)
    {
        note(data, "pressure {}", value);
    }
    static void distance(void *data, zwp_tablet_tool_v2 *, uint32_t value)
    {
        note(data, "distance {}", value);
    }
    static void tilt(void *data, zwp_tablet_tool_v2 *, wl_fixed_t x, wl_fixed_t y)
    {
        note(data, "tilt {},{}", wl_fixed_to_double(x), wl_fixed_to_double(y));
    }
    static void rotation(void *data, zwp_tablet_tool_v2 *, wl_fixed_t degrees)
    {
        note(data, "rotation {}", wl_fixed_to_double(degrees));
    }
    static void slider(void *data, zwp_tablet_tool_v2 *, int32_t position)
    {
        note(data, "slider {}", position);
    }
    static void wheel(void *data, zwp_tablet_tool_v2 *, wl_fixed_t degrees, int32_t clicks)
    {
        note(data, "wheel {} {}", wl_fixed_to_double(degrees), clicks);
    }
    static void button(void *data, zwp_tablet_tool_v2 *, uint32_t, uint32_t code, uint32_t state)
    {
        note(data, "button {} {}", state == ZWP_TABLET_TOOL_V2_BUTTON_STATE_PRESSED ? "down" : "up", code);
    }

    // The client ignores the rings, strips and dials of a pad.
    static void pad_group(void *, zwp_tablet_pad_v2 *, zwp_tablet_pad_group_v2 *group)
    {
        zwp_tablet_pad_group_v2_destroy(group);
    }
    static void pad_done(void *data, zwp_tablet_pad_v2 *) { note(data, "pad"); }
    static void pad_button(void *data, zwp_tablet_pad_v2 *, uint32_t, uint32_t number, uint32_t state)
    {
        note(data, "pad button {} {}", state == ZWP_TABLET_PAD_V2_BUTTON_STATE_PRESSED ? "down" : "up",
             number);
    }
    static void pad_enter(void *data, zwp_tablet_pad_v2 *, uint32_t, zwp_tablet_v2 *, wl_surface *surface)
    {
        note(data, "pad enter {}", self(data).of->owner().name_of(surface));
    }
    static void pad_leave(void *data, zwp_tablet_pad_v2 *, uint32_t, wl_surface *)
    {
        note(data, "pad leave");
    }
    static void pad_removed(void *data, zwp_tablet_pad_v2 *pad)
    {
        note(data, "pad removed");
        self(data).pads.remove_if([&](const auto &other) { return other.get() == pad; });
    }

    static void tablet_added(void *data, zwp_tablet_seat_v2 *seat, zwp_tablet_v2 *tablet);
    static void tool_added(void *data, zwp_tablet_seat_v2 *seat, zwp_tablet_tool_v2 *tool);
    static void pad_added(void *data, zwp_tablet_seat_v2 *seat, zwp_tablet_pad_v2 *pad);
};

static constexpr zwp_tablet_v2_listener tablet_listener{
    .name = tablet_events::tablet_name,
    .id = [](void *, zwp_tablet_v2 *, uint32_t, uint32_t) {},
    .path = [](void *, zwp_tablet_v2 *, const char *) {},
    .done = [](void *, zwp_tablet_v2 *) {},
    .removed = tablet_events::tablet_removed,
    .bustype = [](void *, zwp_tablet_v2 *, uint32_t) {},
};

static constexpr zwp_tablet_tool_v2_listener tool_listener{
    .type = [](void *, zwp_tablet_tool_v2 *, uint32_t) {},
    .hardware_serial = [](void *, zwp_tablet_tool_v2 *, uint32_t, uint32_t) {},
    .hardware_id_wacom = [](void *, zwp_tablet_tool_v2 *, uint32_t, uint32_t) {},
    .capability = [](void *, zwp_tablet_tool_v2 *, uint32_t) {},
    .done = tablet_events::tool_done,
    .removed = tablet_events::tool_removed,
    .proximity_in = tablet_events::proximity_in,
    .proximity_out = tablet_events::proximity_out,
    .down = tablet_events::down,
    .up = tablet_events::up,
    .motion = tablet_events::motion,
    .pressure = tablet_events::pressure,
    .distance = tablet_events::distance,
    .tilt = tablet_events::tilt,
    .rotation = tablet_events::rotation,
    .slider = tablet_events::slider,
    .wheel = tablet_events::wheel,
    .button = tablet_events::button,
    .frame = [](void *, zwp_tablet_tool_v2 *, uint32_t) {},
};

static constexpr zwp_tablet_pad_v2_listener pad_listener{
    .group = tablet_events::pad_group,
    .path = [](void *, zwp_tablet_pad_v2 *, const char *) {},
    .buttons = [](void *, zwp_tablet_pad_v2 *, uint32_t) {},
    .done = tablet_events::pad_done,
    .button = tablet_events::pad_button,
    .enter = tablet_events::pad_enter,
    .leave = tablet_events::pad_leave,
    .removed = tablet_events::pad_removed,
};

static constexpr zwp_tablet_seat_v2_listener seat_listener{
    .tablet_added = tablet_events::tablet_added,
    .tool_added = tablet_events::tool_added,
    .pad_added = tablet_events::pad_added,
};

void tablet_events::tablet_added(void *data, zwp_tablet_seat_v2 *, zwp_tablet_v2 *tablet)
{
    self(data).tablets.emplace_back(tablet);
    zwp_tablet_v2_add_listener(tablet, &tablet_listener, data);
}

void tablet_events::tool_added(void *data, zwp_tablet_seat_v2 *, zwp_tablet_tool_v2 *tool)
{
    self(data).tools.emplace_back(tool);
    zwp_tablet_tool_v2_add_listener(tool, &tool_listener, data);
}

void tablet_events::pad_added(void *data, zwp_tablet_seat_v2 *, zwp_tablet_pad_v2 *pad)
{
    self(data).pads.emplace_back(pad);
    zwp_tablet_pad_v2_add_listener(pad, &pad_listener, data);
}

tablet_seat::tablet_seat(seat &s)
    : of(&s),
      manager(static_cast<zwp_tablet_manager_v2 *>(s.owner().bind(zwp_tablet_manager_v2_interface, 1))),
      object(zwp_tablet_manager_v2_get_tablet_seat(manager.get(), s.get()))
{
    zwp_tablet_seat_v2_add_listener(object.get(), &seat_listener, this);
}

tablet_seat::~tablet_seat() = default;

std::vector<std::string> tablet_seat::take()
{
    return std::exchange(events, {});
}

bool tablet_seat::heard(const std::string &event) const
{
    return std::ranges::contains(events, event);
}

void tablet_seat::set_cursor(wl_surface *surface, int hotspot_x, int hotspot_y)
{
    zwp_tablet_tool_v2_set_cursor(tools.back().get(), proximity, surface, hotspot_x, hotspot_y);
}

} // namespace test
