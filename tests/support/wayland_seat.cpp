#include "wayland_seat.hpp"

#include "cursor-shape-v1-client-protocol.h"

#include <algorithm>
#include <format>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>
#include <wayland-client.h>

namespace test
{

struct seat_events {
    static seat &self(void *data) { return *static_cast<seat *>(data); }

    template <class... Arguments>
    static void note(void *data, std::format_string<Arguments...> text, Arguments &&...arguments)
    {
        self(data).events.push_back(std::format(text, std::forward<Arguments>(arguments)...));
    }

    static std::string name(void *data, wl_surface *surface) { return self(data).owner().name_of(surface); }

    static void keymap(void *data, wl_keyboard *, uint32_t format, int fd, uint32_t size)
    {
        seat &s = self(data);
        s.keymap_events++;
        s.keymap_text.clear();
        void *text = format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1
                         ? mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0)
                         : MAP_FAILED;
        if (text != MAP_FAILED) {
            s.keymap_text.assign(static_cast<const char *>(text), size - 1);
            munmap(text, size);
        }
        close(fd);
    }
    static void keys_enter(void *data, wl_keyboard *, uint32_t, wl_surface *surface, wl_array *)
    {
        note(data, "keys enter {}", name(data, surface));
    }
    static void keys_leave(void *data, wl_keyboard *, uint32_t, wl_surface *surface)
    {
        note(data, "keys leave {}", name(data, surface));
    }
    static void key(void *data, wl_keyboard *, uint32_t serial, uint32_t, uint32_t code, uint32_t state)
    {
        if (state == WL_KEYBOARD_KEY_STATE_PRESSED)
            self(data).press = serial;
        note(data, "key {} {}", state == WL_KEYBOARD_KEY_STATE_PRESSED ? "down" : "up", code);
    }
    static void modifiers(void *data, wl_keyboard *, uint32_t, uint32_t depressed, uint32_t latched,
                          uint32_t locked, uint32_t group)
    {
        note(data, "modifiers {} {} {}", depressed, latched | locked, group);
    }
    static void repeat_info(void *data, wl_keyboard *, int rate, int delay)
    {
        self(data).rate = rate;
        self(data).delay = delay;
    }

    static std::string at(wl_fixed_t x, wl_fixed_t y)
    {
        return std::format("{},{}", wl_fixed_to_double(x), wl_fixed_to_double(y));
    }
    static void pointer_enter(void *data, wl_pointer *, uint32_t serial, wl_surface *surface, wl_fixed_t x,
                              wl_fixed_t y)
    {
        self(data).enter = serial;
        note(data, "pointer enter {} {}", name(data, surface), at(x, y));
    }
    static void pointer_leave(void *data, wl_pointer *, uint32_t, wl_surface *surface)
    {
        note(data, "pointer leave {}", name(data, surface));
    }
    static void motion(void *data, wl_pointer *, uint32_t, wl_fixed_t x, wl_fixed_t y)
    {
        self(data).motion = at(x, y);
        note(data, "motion {}", self(data).motion);
    }
    static void button(void *data, wl_pointer *, uint32_t serial, uint32_t, uint32_t code, uint32_t state)
    {
        if (state == WL_POINTER_BUTTON_STATE_PRESSED)
            self(data).press = serial;
        note(data, "button {} {}", state == WL_POINTER_BUTTON_STATE_PRESSED ? "down" : "up", code);
    }
    static void axis(void *data, wl_pointer *, uint32_t, uint32_t orientation, wl_fixed_t value)
    {
        note(data, "axis {} {}", orientation, wl_fixed_to_double(value));
    }
    static void frame(void *data, wl_pointer *) { self(data).frame_events++; }
    static void axis_value120(void *data, wl_pointer *, uint32_t orientation, int32_t value)
    {
        note(data, "axis120 {} {}", orientation, value);
    }
    static void axis_source(void *data, wl_pointer *, uint32_t source)
    {
        note(data, "axis source {}", source);
    }

    static void capabilities(void *data, wl_seat *, uint32_t now) { self(data).follow_capabilities(now); }
};

static constexpr wl_seat_listener seat_listener{
    .capabilities = seat_events::capabilities,
    .name = [](void *, wl_seat *, const char *) {},
};

static constexpr wl_keyboard_listener keyboard_listener{
    .keymap = seat_events::keymap,
    .enter = seat_events::keys_enter,
    .leave = seat_events::keys_leave,
    .key = seat_events::key,
    .modifiers = seat_events::modifiers,
    .repeat_info = seat_events::repeat_info,
};

static constexpr wl_pointer_listener pointer_listener{
    .enter = seat_events::pointer_enter,
    .leave = seat_events::pointer_leave,
    .motion = seat_events::motion,
    .button = seat_events::button,
    .axis = seat_events::axis,
    .frame = seat_events::frame,
    .axis_source = seat_events::axis_source,
    .axis_stop = [](void *, wl_pointer *, uint32_t, uint32_t) {},
    .axis_discrete = [](void *, wl_pointer *, uint32_t, int32_t) {},
    .axis_value120 = seat_events::axis_value120,
    .axis_relative_direction = [](void *, wl_pointer *, uint32_t, uint32_t) {},
};

seat::seat(client &owner) : owned_by(&owner), object(static_cast<wl_seat *>(owner.bind(wl_seat_interface, 9)))
{
    wl_seat_add_listener(object.get(), &seat_listener, this);
}

seat::~seat() = default;

void seat::follow_capabilities(uint32_t now)
{
    offered = now;
    const bool keys = (now & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
    if (keys && keyboard == nullptr) {
        keyboard.reset(wl_seat_get_keyboard(object.get()));
        wl_keyboard_add_listener(keyboard.get(), &keyboard_listener, this);
    } else if (!keys) {
        keyboard.reset();
    }
    const bool points = (now & WL_SEAT_CAPABILITY_POINTER) != 0;
    if (points && pointer == nullptr) {
        pointer.reset(wl_seat_get_pointer(object.get()));
        wl_pointer_add_listener(pointer.get(), &pointer_listener, this);
    } else if (!points) {
        pointer.reset();
    }
}

std::vector<std::string> seat::take()
{
    return std::exchange(events, {});
}

bool seat::heard(const std::string &event) const
{
    return std::ranges::contains(events, event);
}

void seat::set_cursor(wl_surface *surface, int hotspot_x, int hotspot_y)
{
    wl_pointer_set_cursor(pointer.get(), enter, surface, hotspot_x, hotspot_y);
}

void seat::set_shape(uint32_t shape)
{
    const proxy<wp_cursor_shape_manager_v1> manager{
        static_cast<wp_cursor_shape_manager_v1 *>(owned_by->bind(wp_cursor_shape_manager_v1_interface, 1))};
    const proxy<wp_cursor_shape_device_v1> device{
        wp_cursor_shape_manager_v1_get_pointer(manager.get(), pointer.get())};
    wp_cursor_shape_device_v1_set_shape(device.get(), enter, shape);
}

} // namespace test
