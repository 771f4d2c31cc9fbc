// What a client says about a surface. Hints about its pictures take effect with the surface's next commit.
#pragma once

#include "wayland_client.hpp"
#include "wayland_proxy.hpp"

namespace test
{

// Says whether frames may tear.
class tearing_hint
{
public:
    explicit tearing_hint(const window &w);
    void set_async(bool async);

private:
    proxy<wp_tearing_control_v1> object;
};

// Says that the surface shows a game.
class game_hint
{
public:
    explicit game_hint(const window &w);

private:
    proxy<wp_content_type_v1> object;
};

// Says how opaque the surface is as a whole.
class opacity_hint
{
public:
    explicit opacity_hint(const window &w);
    void set(double opacity); // from 0 to 1

private:
    proxy<wp_alpha_modifier_surface_v1> object;
};

// Keeps the user from counting as idle while the surface can be seen. Ends with the object.
class idle_inhibitor
{
public:
    idle_inhibitor(client &c, wl_surface *surface);

private:
    proxy<zwp_idle_inhibitor_v1> object;
};

} // namespace test
