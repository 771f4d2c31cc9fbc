// Games lock or confine the pointer, and still receive its relative motion.
#pragma once

#include "wayland_seat.hpp"

#include <optional>

struct zwp_confined_pointer_v1;
struct zwp_locked_pointer_v1;

namespace test
{

enum class constraint_life : uint32_t { once = 1, persistent = 2 };

// Surface coordinates.
struct region_box {
    int x, y, width, height;
};

class locked_pointer
{
public:
    locked_pointer(seat &s, wl_surface *surface, constraint_life life = constraint_life::persistent);
    ~locked_pointer();
    locked_pointer(const locked_pointer &) = delete;
    locked_pointer &operator=(const locked_pointer &) = delete;

    // Takes effect with the surface's next commit.
    void hint(double sx, double sy);
    void destroy();

    [[nodiscard]] bool active() const { return locks > unlocks; }
    [[nodiscard]] int activations() const { return locks; }

private:
    friend struct constraint_events;
    proxy<zwp_pointer_constraints_v1> manager;
    proxy<zwp_locked_pointer_v1> object;
    int locks = 0, unlocks = 0;
};

class confined_pointer
{
public:
    // Without a region, the pointer is confined to the whole surface.
    confined_pointer(seat &s, wl_surface *surface, std::optional<region_box> region = {});
    ~confined_pointer();
    confined_pointer(const confined_pointer &) = delete;
    confined_pointer &operator=(const confined_pointer &) = delete;

    [[nodiscard]] bool active() const { return confines > releases; }

private:
    friend struct constraint_events;
    proxy<zwp_pointer_constraints_v1> manager;
    proxy<zwp_confined_pointer_v1> object;
    int confines = 0, releases = 0;
};

// Records "3,-4 raw 6,-8 at 5000": the accelerated motion, the unaccelerated motion, and the time in
// microseconds.
class relative_pointer
{
public:
    explicit relative_pointer(seat &s);
    ~relative_pointer();
    relative_pointer(const relative_pointer &) = delete;
    relative_pointer &operator=(const relative_pointer &) = delete;

    std::vector<std::string> take();

private:
    friend struct constraint_events;
    proxy<zwp_relative_pointer_manager_v1> manager;
    proxy<zwp_relative_pointer_v1> object;
    std::vector<std::string> events;
};

} // namespace test
