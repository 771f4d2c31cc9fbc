// A client's keyboard and pointer. They record their events as text, in order: "keys enter editor", "key down
// 30", "modifiers 1 0 0", "pointer enter editor 10,20", "motion 11,20", "button down 272", "axis 0 15",
// "pointer leave editor".
#pragma once

#include "wayland_client.hpp"
#include "wayland_proxy.hpp"

struct wl_surface;

namespace test
{

class seat
{
public:
    explicit seat(client &owner);
    ~seat();
    seat(const seat &) = delete;
    seat &operator=(const seat &) = delete;

    [[nodiscard]] uint32_t capabilities() const { return offered; } // of wl_seat_capability
    // Returns all events since the last call.
    std::vector<std::string> take();
    [[nodiscard]] bool heard(const std::string &event) const;
    [[nodiscard]] const std::string &last_motion() const { return motion; }

    [[nodiscard]] const std::string &keymap() const { return keymap_text; }
    [[nodiscard]] int keymaps() const { return keymap_events; }
    [[nodiscard]] int repeat_rate() const { return rate; }
    [[nodiscard]] int repeat_delay() const { return delay; }
    [[nodiscard]] int frames() const { return frame_events; }

    // The serials of the last press of a button or key, and of the pointer's last entry.
    [[nodiscard]] uint32_t press_serial() const { return press; }
    [[nodiscard]] uint32_t enter_serial() const { return enter; }

    // Makes the surface the cursor. Null hides the cursor.
    void set_cursor(wl_surface *surface, int hotspot_x, int hotspot_y);
    void set_shape(uint32_t shape); // of wp_cursor_shape_device_v1_shape

    [[nodiscard]] wl_seat *get() const { return object.get(); }
    [[nodiscard]] wl_pointer *get_pointer() const { return pointer.get(); }
    [[nodiscard]] client &owner() const { return *owned_by; }

private:
    friend struct seat_events;
    void follow_capabilities(uint32_t now);

    client *owned_by;
    proxy<wl_seat> object;
    proxy<wl_keyboard> keyboard;
    proxy<wl_pointer> pointer;
    uint32_t offered = 0;
    std::vector<std::string> events;
    std::string motion;
    std::string keymap_text;
    int keymap_events = 0, rate = -1, delay = -1, frame_events = 0;
    uint32_t press = 0, enter = 0;
};

} // namespace test
