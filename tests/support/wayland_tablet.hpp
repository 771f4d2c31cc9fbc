// The events of drawing tablets that a client receives, as text in order: "tablet pad-one", "pen" when a tool
// has been described, "in editor" when it comes near, "motion 10,20", "pressure 32767", "distance 100", "tilt
// 5,-5", "down", "up", "button down 331", "out", "tablet removed", "pen removed".
#pragma once

#include "wayland_seat.hpp"

#include <list>

namespace test
{

class tablet_seat
{
public:
    explicit tablet_seat(seat &s);
    ~tablet_seat();
    tablet_seat(const tablet_seat &) = delete;
    tablet_seat &operator=(const tablet_seat &) = delete;

    std::vector<std::string> take();
    [[nodiscard]] bool heard(const std::string &event) const;
    // Sets the cursor of the last tool; null hides it. It has an effect only while the tool is near.
    void set_cursor(wl_surface *surface, int hotspot_x, int hotspot_y);

private:
    friend struct tablet_events;
    seat *of;
    proxy<zwp_tablet_manager_v2> manager;
    proxy<zwp_tablet_seat_v2> object;
    std::list<proxy<zwp_tablet_v2>> tablets;
    std::list<proxy<zwp_tablet_tool_v2>> tools;
    std::list<proxy<zwp_tablet_pad_v2>> pads;
    std::vector<std::string> events;
    uint32_t proximity = 0; // serial of the last time that a tool came near
};

} // namespace test
