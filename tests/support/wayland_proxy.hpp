// Handles that own client-side protocol objects.
#pragma once

#include <memory>

struct ext_idle_notification_v1;
struct ext_idle_notifier_v1;
struct ext_session_lock_manager_v1;
struct ext_session_lock_surface_v1;
struct wl_data_device;
struct wl_data_device_manager;
struct wl_data_offer;
struct wl_data_source;
struct wl_keyboard;
struct wl_pointer;
struct wl_seat;
struct wp_content_type_manager_v1;
struct wp_content_type_v1;
struct wp_cursor_shape_device_v1;
struct wp_cursor_shape_manager_v1;
struct wp_tearing_control_manager_v1;
struct wp_tearing_control_v1;
struct xdg_activation_token_v1;
struct xdg_activation_v1;
struct xdg_popup;
struct xdg_positioner;
struct zwlr_layer_shell_v1;
struct zwlr_virtual_pointer_manager_v1;
struct zwlr_virtual_pointer_v1;
struct zwp_confined_pointer_v1;
struct zwp_idle_inhibit_manager_v1;
struct zwp_idle_inhibitor_v1;
struct zwp_input_method_keyboard_grab_v2;
struct zwp_input_method_manager_v2;
struct zwp_input_method_v2;
struct zwp_input_popup_surface_v2;
struct zwp_keyboard_shortcuts_inhibit_manager_v1;
struct zwp_keyboard_shortcuts_inhibitor_v1;
struct zwp_locked_pointer_v1;
struct zwp_pointer_constraints_v1;
struct zwp_pointer_gesture_hold_v1;
struct zwp_pointer_gesture_pinch_v1;
struct zwp_pointer_gesture_swipe_v1;
struct zwp_pointer_gestures_v1;
struct zwp_primary_selection_device_manager_v1;
struct zwp_primary_selection_device_v1;
struct zwp_primary_selection_offer_v1;
struct zwp_primary_selection_source_v1;
struct zwp_relative_pointer_manager_v1;
struct zwp_relative_pointer_v1;
struct zwp_tablet_manager_v2;
struct zwp_tablet_pad_v2;
struct zwp_tablet_seat_v2;
struct zwp_tablet_tool_v2;
struct zwp_tablet_v2;
struct zwp_text_input_manager_v3;
struct zwp_text_input_v3;
struct zwp_virtual_keyboard_manager_v1;
struct zwp_virtual_keyboard_v1;
struct zxdg_decoration_manager_v1;
struct zxdg_toplevel_decoration_v1;

namespace test
{

struct destroy_proxy {
    void operator()(wl_seat *object) const;
    void operator()(wl_keyboard *object) const;
    void operator()(wl_pointer *object) const;
    void operator()(wl_data_device_manager *object) const;
    void operator()(wl_data_device *object) const;
    void operator()(wl_data_source *object) const;
    void operator()(wl_data_offer *object) const;
    void operator()(ext_idle_notification_v1 *object) const;
    void operator()(ext_idle_notifier_v1 *object) const;
    void operator()(ext_session_lock_manager_v1 *object) const;
    void operator()(ext_session_lock_surface_v1 *object) const;
    void operator()(wp_content_type_manager_v1 *object) const;
    void operator()(wp_content_type_v1 *object) const;
    void operator()(wp_cursor_shape_device_v1 *object) const;
    void operator()(wp_cursor_shape_manager_v1 *object) const;
    void operator()(wp_tearing_control_manager_v1 *object) const;
    void operator()(wp_tearing_control_v1 *object) const;
    void operator()(xdg_activation_token_v1 *object) const;
    void operator()(xdg_activation_v1 *object) const;
    void operator()(xdg_popup *object) const;
    void operator()(xdg_positioner *object) const;
    void operator()(zwlr_layer_shell_v1 *object) const;
    void operator()(zwlr_virtual_pointer_manager_v1 *object) const;
    void operator()(zwlr_virtual_pointer_v1 *object) const;
    void operator()(zwp_confined_pointer_v1 *object) const;
    void operator()(zwp_idle_inhibit_manager_v1 *object) const;
    void operator()(zwp_idle_inhibitor_v1 *object) const;
    void operator()(zwp_input_method_keyboard_grab_v2 *object) const;
    void operator()(zwp_input_method_manager_v2 *object) const;
    void operator()(zwp_input_method_v2 *object) const;
    void operator()(zwp_input_popup_surface_v2 *object) const;
    void operator()(zwp_keyboard_shortcuts_inhibit_manager_v1 *object) const;
    void operator()(zwp_keyboard_shortcuts_inhibitor_v1 *object) const;
    void operator()(zwp_locked_pointer_v1 *object) const;
    void operator()(zwp_pointer_constraints_v1 *object) const;
    void operator()(zwp_pointer_gesture_hold_v1 *object) const;
    void operator()(zwp_pointer_gesture_pinch_v1 *object) const;
    void operator()(zwp_pointer_gesture_swipe_v1 *object) const;
    void operator()(zwp_pointer_gestures_v1 *object) const;
    void operator()(zwp_primary_selection_device_manager_v1 *object) const;
    void operator()(zwp_primary_selection_device_v1 *object) const;
    void operator()(zwp_primary_selection_offer_v1 *object) const;
    void operator()(zwp_primary_selection_source_v1 *object) const;
    void operator()(zwp_relative_pointer_manager_v1 *object) const;
    void operator()(zwp_relative_pointer_v1 *object) const;
    void operator()(zwp_tablet_manager_v2 *object) const;
    void operator()(zwp_tablet_pad_v2 *object) const;
    void operator()(zwp_tablet_seat_v2 *object) const;
    void operator()(zwp_tablet_tool_v2 *object) const;
    void operator()(zwp_tablet_v2 *object) const;
    void operator()(zwp_text_input_manager_v3 *object) const;
    void operator()(zwp_text_input_v3 *object) const;
    void operator()(zwp_virtual_keyboard_manager_v1 *object) const;
    void operator()(zwp_virtual_keyboard_v1 *object) const;
    void operator()(zxdg_decoration_manager_v1 *object) const;
    void operator()(zxdg_toplevel_decoration_v1 *object) const;
};
template <class T> using proxy = std::unique_ptr<T, destroy_proxy>;

} // namespace test
