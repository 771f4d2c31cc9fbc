#include "wayland_popup.hpp"

#include "xdg-decoration-unstable-v1-client-protocol.h"
#include "xdg-shell-client-protocol.h"

#include <utility>
#include <wayland-client.h>

namespace test
{

struct popup_events {
    static popup &self(void *data) { return *static_cast<popup *>(data); }

    static void configure(void *data, xdg_popup *, int32_t x, int32_t y, int32_t width, int32_t height)
    {
        popup &p = self(data);
        p.last_x = x;
        p.last_y = y;
        p.last_size = {width, height};
    }
    static void popup_done(void *data, xdg_popup *) { self(data).dismissals++; }
    static void repositioned(void *data, xdg_popup *, uint32_t token) { self(data).token = token; }
    static void surface_configure(void *data, xdg_surface *role, uint32_t serial)
    {
        popup &p = self(data);
        p.configures++;
        xdg_surface_ack_configure(role, serial);
        if (p.when == popup::draws::always && p.dismissals == 0) // the last configure may arrive late
            p.owned_by->paint(p.surface, p.last_size, 0xffd0d0d0);
    }
};

static constexpr xdg_popup_listener popup_listener{
    .configure = popup_events::configure,
    .popup_done = popup_events::popup_done,
    .repositioned = popup_events::repositioned,
};
static constexpr xdg_surface_listener popup_surface_listener{.configure = popup_events::surface_configure};

static proxy<xdg_positioner> make_positioner(client &owner, const placement &where)
{
    proxy<xdg_positioner> p{xdg_wm_base_create_positioner(owner.shell())};
    xdg_positioner_set_size(p.get(), where.size.width, where.size.height);
    xdg_positioner_set_anchor_rect(p.get(), where.x, where.y, 1, 1);
    xdg_positioner_set_anchor(p.get(), XDG_POSITIONER_ANCHOR_TOP_LEFT);
    xdg_positioner_set_gravity(p.get(), XDG_POSITIONER_GRAVITY_BOTTOM_RIGHT);
    xdg_positioner_set_constraint_adjustment(p.get(), where.adjustment);
    return p;
}

popup::popup(client &owner, xdg_surface *parent, const placement &where, draws draw_when, const seat *grabs,
             uint32_t serial, layer_surface *adopted_by)
    : owned_by(&owner), surface(owner.create_surface("popup")),
      role(xdg_wm_base_get_xdg_surface(owner.shell(), surface)), when(draw_when)
{
    xdg_surface_add_listener(role, &popup_surface_listener, this);
    take_role_again(parent, where);
    if (adopted_by != nullptr)
        adopted_by->adopt(object);
    if (grabs != nullptr)
        xdg_popup_grab(object, grabs->get(), serial);
    wl_surface_commit(surface);
}

void popup::grab(const seat &grabs, uint32_t serial)
{
    xdg_popup_grab(object, grabs.get(), serial);
}

popup::popup(window &parent, const placement &where, draws draw_when, const seat *grabs, uint32_t serial)
    : popup(parent.owner(), parent.shell_surface(), where, draw_when, grabs, serial)
{
}

popup::popup(popup &parent, const placement &where, const seat *grabs, uint32_t serial)
    : popup(*parent.owned_by, parent.role, where, draws::always, grabs, serial)
{
}

popup::popup(layer_surface &parent, const placement &where, const seat *grabs, uint32_t serial)
    : popup(parent.owner(), nullptr, where, draws::always, grabs, serial, &parent)
{
}

popup::~popup()
{
    destroy();
}

void popup::take_role_again(xdg_surface *parent, const placement &where)
{
    object = xdg_surface_get_popup(role, parent, make_positioner(*owned_by, where).get());
    xdg_popup_add_listener(object, &popup_listener, this);
}

void popup::drop_role()
{
    xdg_popup_destroy(std::exchange(object, nullptr));
}

void popup::attach_nothing()
{
    wl_surface_attach(surface, nullptr, 0, 0);
    wl_surface_commit(surface);
}

void popup::reposition(const placement &where, uint32_t with_token)
{
    xdg_popup_reposition(object, make_positioner(*owned_by, where).get(), with_token);
}

void popup::destroy_surface()
{
    owned_by->destroy_surface(std::exchange(surface, nullptr));
}

void popup::destroy()
{
    if (object != nullptr)
        xdg_popup_destroy(std::exchange(object, nullptr));
    if (role != nullptr)
        xdg_surface_destroy(std::exchange(role, nullptr));
    if (surface != nullptr)
        destroy_surface();
}

struct decoration_events {
    static void configure(void *data, zxdg_toplevel_decoration_v1 *, uint32_t mode)
    {
        auto &d = *static_cast<decoration *>(data);
        d.last_mode = mode;
        d.mode_events++;
    }
};

decoration::decoration(window &w)
    : manager(
          static_cast<zxdg_decoration_manager_v1 *>(w.owner().bind(zxdg_decoration_manager_v1_interface, 1))),
      object(zxdg_decoration_manager_v1_get_toplevel_decoration(manager.get(), w.shell_toplevel()))
{
    static constexpr zxdg_toplevel_decoration_v1_listener listener{.configure = decoration_events::configure};
    zxdg_toplevel_decoration_v1_add_listener(object.get(), &listener, this);
}

decoration::~decoration() = default;

void decoration::ask(uint32_t mode)
{
    zxdg_toplevel_decoration_v1_set_mode(object.get(), mode);
}

void decoration::ask_nothing()
{
    zxdg_toplevel_decoration_v1_unset_mode(object.get());
}

} // namespace test
