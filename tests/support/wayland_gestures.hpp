// The gestures of a touchpad that a client receives, as text in order: "swipe begin editor 3", "swipe update
// 5,-2", "swipe end", "pinch begin editor 2", "pinch update 1,0 scale 1.5 turned 10", "pinch cancelled",
// "hold begin editor 4", "hold end".
#pragma once

#include "wayland_seat.hpp"

namespace test
{

class pointer_gestures
{
public:
    explicit pointer_gestures(seat &s);
    ~pointer_gestures();
    pointer_gestures(const pointer_gestures &) = delete;
    pointer_gestures &operator=(const pointer_gestures &) = delete;

    std::vector<std::string> take();
    [[nodiscard]] bool heard(const std::string &event) const;

private:
    friend struct gesture_events;
    seat *of;
    proxy<zwp_pointer_gestures_v1> manager;
    proxy<zwp_pointer_gesture_swipe_v1> swipe;
    proxy<zwp_pointer_gesture_pinch_v1> pinch;
    proxy<zwp_pointer_gesture_hold_v1> hold;
    std::vector<std::string> events;
};

} // namespace test
