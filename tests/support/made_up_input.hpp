// Input devices that tests plug in and use. The time of their events grows by one millisecond with each
// event.
#pragma once

#include "wlr.hpp"

#include <list>
#include <string>

extern "C" {
#include <wlr/interfaces/wlr_keyboard.h>
#include <wlr/interfaces/wlr_pointer.h>
#define static
#include <wlr/interfaces/wlr_switch.h>
#include <wlr/interfaces/wlr_tablet_pad.h>
#include <wlr/interfaces/wlr_tablet_tool.h>
#include <wlr/interfaces/wlr_touch.h>
#undef static
}

namespace test
{

// Returns the keymap of a layout as clients hand it over.
std::string keymap_text(const char *layout);

struct made_up_keyboard {
    explicit made_up_keyboard(const std::string &name);
    ~made_up_keyboard();
    made_up_keyboard(const made_up_keyboard &) = delete;
    made_up_keyboard &operator=(const made_up_keyboard &) = delete;

    // Keys are evdev codes, KEY_* of linux/input-event-codes.h.
    void press(uint32_t key);
    void release(uint32_t key);
    void tap(uint32_t key);
    void use_keymap(const char *layout);
    void use_keymap_text(const std::string &text);

    wlr_keyboard base{};
};

struct made_up_pointer {
    explicit made_up_pointer(const std::string &name);
    ~made_up_pointer();
    made_up_pointer(const made_up_pointer &) = delete;
    made_up_pointer &operator=(const made_up_pointer &) = delete;

    void move(double dx, double dy);
    void move_to(double x, double y); // fractions of the layout, 0 to 1
    void press(uint32_t button);
    void release(uint32_t button);
    void click(uint32_t button);
    void scroll(wl_pointer_axis orientation, double delta, int32_t discrete);

    // Gestures of a touchpad. Only one is under way at a time, as with real hardware.
    void swipe_begin(uint32_t count);
    void swipe_update(double dx, double dy);
    void swipe_end(bool cancelled = false);
    void pinch_begin(uint32_t count);
    // The scale counts from the beginning of the gesture, the rotation in degrees from the last update.
    void pinch_update(double dx, double dy, double scale, double rotation);
    void pinch_end(bool cancelled = false);
    void hold_begin(uint32_t count);
    void hold_end(bool cancelled = false);

    wlr_pointer base{};
    uint32_t fingers = 0; // of the gesture under way
};

struct made_up_touch {
    explicit made_up_touch(const std::string &name, const std::string &output_name);
    ~made_up_touch();
    made_up_touch(const made_up_touch &) = delete;
    made_up_touch &operator=(const made_up_touch &) = delete;

    // Places are fractions of the device, 0 to 1. Each call is a frame of its own.
    void down(int32_t finger, double x, double y);
    void move(int32_t finger, double x, double y);
    void up(int32_t finger);
    void cancel(int32_t finger);

    wlr_touch base{};
    std::string output_name;
};

struct made_up_tablet {
    explicit made_up_tablet(const std::string &name);
    ~made_up_tablet();
    made_up_tablet(const made_up_tablet &) = delete;
    made_up_tablet &operator=(const made_up_tablet &) = delete;

    // The pen comes near, leaves, moves and touches. Places are fractions of the tablet, 0 to 1.
    void pen_in(double x, double y);
    void pen_out();
    void pen_to(double x, double y);
    // Changes the axes that `updated_axes` names. The tablet, the tool and the time are filled in.
    void pen_axes(wlr_tablet_tool_axis_event event);
    void pen_press(); // with its tip
    void pen_release();
    void pen_button(uint32_t button, bool down);

    wlr_tablet base{};
    wlr_tablet_tool pen{};
    double pen_x = 0, pen_y = 0; // its last place
};

struct made_up_tablet_pad {
    explicit made_up_tablet_pad(const std::string &name);
    ~made_up_tablet_pad();
    made_up_tablet_pad(const made_up_tablet_pad &) = delete;
    made_up_tablet_pad &operator=(const made_up_tablet_pad &) = delete;

    wlr_tablet_pad base{};
};

struct made_up_switch {
    explicit made_up_switch(const std::string &name);
    ~made_up_switch();
    made_up_switch(const made_up_switch &) = delete;
    made_up_switch &operator=(const made_up_switch &) = delete;

    void toggle(wlr_switch_type type, bool on);
    void close_lid() { toggle(WLR_SWITCH_TYPE_LID, true); }
    void open_lid() { toggle(WLR_SWITCH_TYPE_LID, false); }

    wlr_switch base{};
};

// All devices of a made-up backend. Erasing a device unplugs it.
struct made_up_devices {
    std::list<made_up_keyboard> keyboards;
    std::list<made_up_pointer> pointers;
    std::list<made_up_touch> touchscreens;
    std::list<made_up_tablet> tablets;
    std::list<made_up_tablet_pad> tablet_pads;
    std::list<made_up_switch> switches;
};

} // namespace test
