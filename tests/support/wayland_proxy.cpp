#include "wayland_proxy.hpp"

#include "alpha-modifier-v1-client-protocol.h"
#include "content-type-v1-client-protocol.h"
#include "cursor-shape-v1-client-protocol.h"
#include "ext-idle-notify-v1-client-protocol.h"
#include "ext-session-lock-v1-client-protocol.h"
#include "idle-inhibit-unstable-v1-client-protocol.h"
#include "input-method-unstable-v2-client-protocol.h"
#include "keyboard-shortcuts-inhibit-unstable-v1-client-protocol.h"
#include "pointer-constraints-unstable-v1-client-protocol.h"
#include "pointer-gestures-unstable-v1-client-protocol.h"
#include "primary-selection-unstable-v1-client-protocol.h"
#include "relative-pointer-unstable-v1-client-protocol.h"
#include "tablet-v2-client-protocol.h"
#include "tearing-control-v1-client-protocol.h"
#include "text-input-unstable-v3-client-protocol.h"
#include "virtual-keyboard-unstable-v1-client-protocol.h"
#include "wlr-virtual-pointer-unstable-v1-client-protocol.h"
#include "xdg-activation-v1-client-protocol.h"
#include "xdg-decoration-unstable-v1-client-protocol.h"
#include "xdg-shell-client-protocol.h"

#include <wayland-client.h>

#define namespace namespace_ // the protocol has a parameter of this name
#include "wlr-layer-shell-unstable-v1-client-protocol.h"
#undef namespace

namespace test
{

void destroy_proxy::operator()(wl_seat *object) const
{
    wl_seat_destroy(object);
}

void destroy_proxy::operator()(wl_keyboard *object) const
{
    wl_keyboard_destroy(object);
}

void destroy_proxy::operator()(wl_pointer *object) const
{
    wl_pointer_destroy(object);
}

void destroy_proxy::operator()(wl_data_device_manager *object) const
{
    wl_data_device_manager_destroy(object);
}

void destroy_proxy::operator()(wl_data_device *object) const
{
    wl_data_device_destroy(object);
}

void destroy_proxy::operator()(wl_data_source *object) const
{
    wl_data_source_destroy(object);
}

void destroy_proxy::operator()(wl_data_offer *object) const
{
    wl_data_offer_destroy(object);
}

void destroy_proxy::operator()(ext_idle_notification_v1 *object) const
{
    ext_idle_notification_v1_destroy(object);
}

void destroy_proxy::operator()(ext_idle_notifier_v1 *object) const
{
    ext_idle_notifier_v1_destroy(object);
}

void destroy_proxy::operator()(ext_session_lock_manager_v1 *object) const
{
    ext_session_lock_manager_v1_destroy(object);
}

void destroy_proxy::operator()(ext_session_lock_surface_v1 *object) const
{
    ext_session_lock_surface_v1_destroy(object);
}

void destroy_proxy::operator()(wp_alpha_modifier_surface_v1 *object) const
{
    wp_alpha_modifier_surface_v1_destroy(object);
}

void destroy_proxy::operator()(wp_alpha_modifier_v1 *object) const
{
    wp_alpha_modifier_v1_destroy(object);
}

void destroy_proxy::operator()(wp_content_type_manager_v1 *object) const
{
    wp_content_type_manager_v1_destroy(object);
}

void destroy_proxy::operator()(wp_content_type_v1 *object) const
{
    wp_content_type_v1_destroy(object);
}

void destroy_proxy::operator()(wp_cursor_shape_device_v1 *object) const
{
    wp_cursor_shape_device_v1_destroy(object);
}

void destroy_proxy::operator()(wp_cursor_shape_manager_v1 *object) const
{
    wp_cursor_shape_manager_v1_destroy(object);
}

void destroy_proxy::operator()(wp_tearing_control_manager_v1 *object) const
{
    wp_tearing_control_manager_v1_destroy(object);
}

void destroy_proxy::operator()(wp_tearing_control_v1 *object) const
{
    wp_tearing_control_v1_destroy(object);
}

void destroy_proxy::operator()(xdg_activation_token_v1 *object) const
{
    xdg_activation_token_v1_destroy(object);
}

void destroy_proxy::operator()(xdg_activation_v1 *object) const
{
    xdg_activation_v1_destroy(object);
}

void destroy_proxy::operator()(xdg_popup *object) const
{
    xdg_popup_destroy(object);
}

void destroy_proxy::operator()(xdg_positioner *object) const
{
    xdg_positioner_destroy(object);
}

void destroy_proxy::operator()(zwlr_layer_shell_v1 *object) const
{
    zwlr_layer_shell_v1_destroy(object);
}

void destroy_proxy::operator()(zwlr_virtual_pointer_manager_v1 *object) const
{
    zwlr_virtual_pointer_manager_v1_destroy(object);
}

void destroy_proxy::operator()(zwlr_virtual_pointer_v1 *object) const
{
    zwlr_virtual_pointer_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_confined_pointer_v1 *object) const
{
    zwp_confined_pointer_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_idle_inhibit_manager_v1 *object) const
{
    zwp_idle_inhibit_manager_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_idle_inhibitor_v1 *object) const
{
    zwp_idle_inhibitor_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_input_method_keyboard_grab_v2 *object) const
{
    zwp_input_method_keyboard_grab_v2_release(object);
}

void destroy_proxy::operator()(zwp_input_method_manager_v2 *object) const
{
    zwp_input_method_manager_v2_destroy(object);
}

void destroy_proxy::operator()(zwp_input_method_v2 *object) const
{
    zwp_input_method_v2_destroy(object);
}

void destroy_proxy::operator()(zwp_input_popup_surface_v2 *object) const
{
    zwp_input_popup_surface_v2_destroy(object);
}

void destroy_proxy::operator()(zwp_keyboard_shortcuts_inhibit_manager_v1 *object) const
{
    zwp_keyboard_shortcuts_inhibit_manager_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_keyboard_shortcuts_inhibitor_v1 *object) const
{
    zwp_keyboard_shortcuts_inhibitor_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_locked_pointer_v1 *object) const
{
    zwp_locked_pointer_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_pointer_constraints_v1 *object) const
{
    zwp_pointer_constraints_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_pointer_gesture_hold_v1 *object) const
{
    zwp_pointer_gesture_hold_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_pointer_gesture_pinch_v1 *object) const
{
    zwp_pointer_gesture_pinch_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_pointer_gesture_swipe_v1 *object) const
{
    zwp_pointer_gesture_swipe_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_pointer_gestures_v1 *object) const
{
    zwp_pointer_gestures_v1_release(object);
}

void destroy_proxy::operator()(zwp_primary_selection_device_manager_v1 *object) const
{
    zwp_primary_selection_device_manager_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_primary_selection_device_v1 *object) const
{
    zwp_primary_selection_device_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_primary_selection_offer_v1 *object) const
{
    zwp_primary_selection_offer_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_primary_selection_source_v1 *object) const
{
    zwp_primary_selection_source_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_relative_pointer_manager_v1 *object) const
{
    zwp_relative_pointer_manager_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_relative_pointer_v1 *object) const
{
    zwp_relative_pointer_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_tablet_manager_v2 *object) const
{
    zwp_tablet_manager_v2_destroy(object);
}

void destroy_proxy::operator()(zwp_tablet_pad_v2 *object) const
{
    zwp_tablet_pad_v2_destroy(object);
}

void destroy_proxy::operator()(zwp_tablet_seat_v2 *object) const
{
    zwp_tablet_seat_v2_destroy(object);
}

void destroy_proxy::operator()(zwp_tablet_tool_v2 *object) const
{
    zwp_tablet_tool_v2_destroy(object);
}

void destroy_proxy::operator()(zwp_tablet_v2 *object) const
{
    zwp_tablet_v2_destroy(object);
}

void destroy_proxy::operator()(zwp_text_input_manager_v3 *object) const
{
    zwp_text_input_manager_v3_destroy(object);
}

void destroy_proxy::operator()(zwp_text_input_v3 *object) const
{
    zwp_text_input_v3_destroy(object);
}

void destroy_proxy::operator()(zwp_virtual_keyboard_manager_v1 *object) const
{
    zwp_virtual_keyboard_manager_v1_destroy(object);
}

void destroy_proxy::operator()(zwp_virtual_keyboard_v1 *object) const
{
    zwp_virtual_keyboard_v1_destroy(object);
}

void destroy_proxy::operator()(zxdg_decoration_manager_v1 *object) const
{
    zxdg_decoration_manager_v1_destroy(object);
}

void destroy_proxy::operator()(zxdg_toplevel_decoration_v1 *object) const
{
    zxdg_toplevel_decoration_v1_destroy(object);
}

} // namespace test
