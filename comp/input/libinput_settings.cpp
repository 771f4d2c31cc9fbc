#include "libinput_settings.hpp"

#include "../config/settings.hpp"

static void set_up_touchpad(device_settings &settings, const device_capabilities &can,
                            const device_preferences &wish)
{
    settings.tap = wish.tap_to_click;
    settings.disable_while_typing = true;
    if (can.natural_scroll)
        settings.natural_scroll = wish.touchpad_natural_scroll;
    if (can.acceleration)
        settings.acceleration = wish.touchpad_acceleration;
}

static void set_up_mouse(device_settings &settings, const device_capabilities &can,
                         const device_preferences &wish)
{
    if (can.natural_scroll)
        settings.natural_scroll = wish.natural_scroll;
    if (!can.acceleration)
        return;
    settings.acceleration = wish.pointer_acceleration;
    settings.profile =
        wish.flat_profile ? LIBINPUT_CONFIG_ACCEL_PROFILE_FLAT : LIBINPUT_CONFIG_ACCEL_PROFILE_ADAPTIVE;
}

device_settings settings_for(const device_capabilities &can, const device_preferences &wish)
{
    device_settings settings;
    if (can.left_handed)
        settings.left_handed = can.tablet ? wish.tablet_left_handed : wish.left_handed;
    if (can.tablet)
        return settings;
    if (can.tap_fingers >= 1)
        set_up_touchpad(settings, can, wish);
    else
        set_up_mouse(settings, can, wish);
    return settings;
}

static device_capabilities capabilities_of(const wlr_input_device *device, libinput_device *handle)
{
    return {
        .tablet = device->type == WLR_INPUT_DEVICE_TABLET,
        .tap_fingers = libinput_device_config_tap_get_finger_count(handle),
        .natural_scroll = libinput_device_config_scroll_has_natural_scroll(handle) != 0,
        .acceleration = libinput_device_config_accel_is_available(handle) != 0,
        .left_handed = libinput_device_config_left_handed_is_available(handle) != 0,
    };
}

static device_preferences configured_preferences()
{
    return {
        .tap_to_click = g_tap_to_click,
        .touchpad_natural_scroll = g_tp_nat_scroll,
        .natural_scroll = g_nat_scroll,
        .touchpad_acceleration = g_tp_accel,
        .pointer_acceleration = g_pointer_accel,
        .flat_profile = g_accel_flat,
        .left_handed = g_left_handed,
        .tablet_left_handed = g_tablet_left_handed,
    };
}

void apply_libinput_settings(wlr_input_device *device)
{
    libinput_device *handle =
        wlr_input_device_is_libinput(device) ? wlr_libinput_get_device_handle(device) : nullptr;
    if (handle == nullptr)
        return;
    const device_settings settings = settings_for(capabilities_of(device, handle), configured_preferences());
    if (settings.tap)
        libinput_device_config_tap_set_enabled(handle, *settings.tap ? LIBINPUT_CONFIG_TAP_ENABLED
                                                                     : LIBINPUT_CONFIG_TAP_DISABLED);
    if (settings.disable_while_typing)
        libinput_device_config_dwt_set_enabled(handle, LIBINPUT_CONFIG_DWT_ENABLED);
    if (settings.natural_scroll)
        libinput_device_config_scroll_set_natural_scroll_enabled(handle, *settings.natural_scroll ? 1 : 0);
    if (settings.acceleration)
        libinput_device_config_accel_set_speed(handle, *settings.acceleration);
    if (settings.profile)
        libinput_device_config_accel_set_profile(handle, *settings.profile);
    if (settings.left_handed)
        libinput_device_config_left_handed_set(handle, *settings.left_handed ? 1 : 0);
}
