#include "wayland_layer.hpp"

#include <utility>
#include <wayland-client.h>

#define namespace namespace_ // the protocol has a parameter of this name
#include "wlr-layer-shell-unstable-v1-client-protocol.h"
#undef namespace

namespace test
{

struct layer_events {
    static void configure(void *data, zwlr_layer_surface_v1 *object, uint32_t serial, uint32_t width,
                          uint32_t height)
    {
        auto &l = *static_cast<layer_surface *>(data);
        l.configures++;
        l.told = {int(width), int(height)};
        if (!l.owned_by->roundtrip_done(l.unmapped_at))
            return;
        zwlr_layer_surface_v1_ack_configure(object, serial);
        if (l.auto_draw)
            l.draw(l.told);
    }
    static void closed(void *data, zwlr_layer_surface_v1 *)
    {
        static_cast<layer_surface *>(data)->close_events++;
    }
};

layer_traits top_bar(int height)
{
    return {.size = {0, height}, .anchor = TOP | LEFT | RIGHT, .zone = height};
}

layer_surface::layer_surface(client &owner, const layer_traits &traits)
    : owned_by(&owner), colour(traits.argb),
      shell(static_cast<zwlr_layer_shell_v1 *>(owner.bind(zwlr_layer_shell_v1_interface, 4))),
      surface(owner.create_surface(traits.name))
{
    static constexpr zwlr_layer_surface_v1_listener listener{
        .configure = layer_events::configure,
        .closed = layer_events::closed,
    };
    object = zwlr_layer_shell_v1_get_layer_surface(shell.get(), surface, owner.output_named(traits.output),
                                                   uint32_t(traits.on), traits.name.c_str());
    zwlr_layer_surface_v1_add_listener(object, &listener, this);
    zwlr_layer_surface_v1_set_size(object, uint32_t(traits.size.width), uint32_t(traits.size.height));
    anchor(traits.anchor);
    zone(traits.zone);
    margins(traits.margins);
    keyboard(traits.keyboard);
    if (traits.opens)
        commit();
}

layer_surface::~layer_surface()
{
    destroy();
}

void layer_surface::size(uint32_t width, uint32_t height)
{
    zwlr_layer_surface_v1_set_size(object, width, height);
}

void layer_surface::anchor(uint32_t edges)
{
    zwlr_layer_surface_v1_set_anchor(object, edges);
}

void layer_surface::zone(int32_t pixels)
{
    zwlr_layer_surface_v1_set_exclusive_zone(object, pixels);
}

void layer_surface::margins(const test::margins &m)
{
    zwlr_layer_surface_v1_set_margin(object, m.top, m.right, m.bottom, m.left);
}

void layer_surface::keyboard(keyboard_wish wish)
{
    zwlr_layer_surface_v1_set_keyboard_interactivity(object, uint32_t(wish));
}

void layer_surface::move_to(layer other)
{
    zwlr_layer_surface_v1_set_layer(object, uint32_t(other));
}

void layer_surface::commit()
{
    wl_surface_commit(surface);
}

void layer_surface::draw(test::size s)
{
    owned_by->paint(surface, s, colour);
}

void layer_surface::unmap()
{
    wl_surface_attach(surface, nullptr, 0, 0);
    commit();
    unmapped_at = owned_by->roundtrip_begin();
}

void layer_surface::adopt(xdg_popup *popup)
{
    zwlr_layer_surface_v1_get_popup(object, popup);
}

void layer_surface::destroy_surface()
{
    if (surface != nullptr)
        owned_by->destroy_surface(std::exchange(surface, nullptr));
}

void layer_surface::destroy()
{
    if (object != nullptr)
        zwlr_layer_surface_v1_destroy(std::exchange(object, nullptr));
    destroy_surface();
}

uint32_t layer_surface::surface_id() const
{
    return surface != nullptr ? wl_proxy_get_id(reinterpret_cast<wl_proxy *>(surface)) : 0;
}

} // namespace test
