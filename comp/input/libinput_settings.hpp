// The user's settings for mice, touchpads and tablets. They are decided on plain values and then handed to
// libinput.
#pragma once

#include "../wlr.hpp"

#include <optional>

struct device_capabilities {
    bool tablet = false;
    int tap_fingers = 0; // 1 or more means a touchpad
    bool natural_scroll = false;
    bool acceleration = false;
    bool left_handed = false;
};

struct device_preferences {
    bool tap_to_click = false;
    bool touchpad_natural_scroll = false;
    bool natural_scroll = false;
    double touchpad_acceleration = 0; // -1 to 1, as libinput takes it
    double pointer_acceleration = 0;
    bool flat_profile = false;
    bool left_handed = false;
    bool tablet_left_handed = false;
};

// The device keeps its own value for what is not set.
struct device_settings {
    std::optional<bool> tap, disable_while_typing, natural_scroll, left_handed;
    std::optional<double> acceleration;
    std::optional<libinput_config_accel_profile> profile;
    friend bool operator==(const device_settings &, const device_settings &) = default;
};

device_settings settings_for(const device_capabilities &can, const device_preferences &wish);

// Does nothing for a device without a libinput handle.
void apply_libinput_settings(wlr_input_device *device);
