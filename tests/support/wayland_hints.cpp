#include "wayland_hints.hpp"

#include "alpha-modifier-v1-client-protocol.h"
#include "content-type-v1-client-protocol.h"
#include "idle-inhibit-unstable-v1-client-protocol.h"
#include "tearing-control-v1-client-protocol.h"

namespace test
{

tearing_hint::tearing_hint(const window &w)
{
    const proxy<wp_tearing_control_manager_v1> manager{static_cast<wp_tearing_control_manager_v1 *>(
        w.owner().bind(wp_tearing_control_manager_v1_interface, 1))};
    object.reset(wp_tearing_control_manager_v1_get_tearing_control(manager.get(), w.get()));
}

void tearing_hint::set_async(bool async)
{
    wp_tearing_control_v1_set_presentation_hint(object.get(),
                                                async ? WP_TEARING_CONTROL_V1_PRESENTATION_HINT_ASYNC
                                                      : WP_TEARING_CONTROL_V1_PRESENTATION_HINT_VSYNC);
}

game_hint::game_hint(const window &w)
{
    const proxy<wp_content_type_manager_v1> manager{
        static_cast<wp_content_type_manager_v1 *>(w.owner().bind(wp_content_type_manager_v1_interface, 1))};
    object.reset(wp_content_type_manager_v1_get_surface_content_type(manager.get(), w.get()));
    wp_content_type_v1_set_content_type(object.get(), WP_CONTENT_TYPE_V1_TYPE_GAME);
}

opacity_hint::opacity_hint(const window &w)
{
    const proxy<wp_alpha_modifier_v1> manager{
        static_cast<wp_alpha_modifier_v1 *>(w.owner().bind(wp_alpha_modifier_v1_interface, 1))};
    object.reset(wp_alpha_modifier_v1_get_surface(manager.get(), w.get()));
}

void opacity_hint::set(double opacity)
{
    wp_alpha_modifier_surface_v1_set_multiplier(object.get(), uint32_t(opacity * UINT32_MAX));
}

idle_inhibitor::idle_inhibitor(client &c, wl_surface *surface)
{
    const proxy<zwp_idle_inhibit_manager_v1> manager{
        static_cast<zwp_idle_inhibit_manager_v1 *>(c.bind(zwp_idle_inhibit_manager_v1_interface, 1))};
    object.reset(zwp_idle_inhibit_manager_v1_create_inhibitor(manager.get(), surface));
}

} // namespace test
