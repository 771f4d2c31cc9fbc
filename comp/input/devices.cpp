#include "devices.hpp"

#include "../config/settings.hpp"
#include "../outputs/lookup.hpp"
#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../text.hpp"
#include "keyboard.hpp"
#include "libinput_settings.hpp"

static void input_dev_handle_destroy(vantore_input_dev &dev)
{
    delete &dev;
}

static void input_dev_track(vantore_server &server, wlr_input_device *device)
{
    auto *dev = new vantore_input_dev{};
    dev->device = device;
    listen<&vantore_input_dev::destroy, input_dev_handle_destroy>(*dev, device->events.destroy);
    wl_list_insert(&server.input_devs, &dev->link);
}

static const char *device_name(const wlr_input_device *device)
{
    return device->name != nullptr ? device->name : "?";
}

static void server_new_pointer(vantore_server &server, wlr_input_device *device)
{
    wlr_cursor_attach_input_device(server.cursor, device);
}

static void server_new_touch(vantore_server &server, wlr_input_device *device)
{
    wlr_cursor_attach_input_device(server.cursor, device);
    apply_touch_mapping(server);
    wlr_log(WLR_INFO, "vantore-comp: touchscreen attached (%s)", device_name(device));
}

static void new_tablet(vantore_server &server, wlr_input_device *device)
{
    wlr_cursor_attach_input_device(server.cursor, device);
    wlr_log(WLR_INFO, "vantore-comp: drawing tablet attached (%s)", device_name(device));
}

static void hand_to_subsystem(vantore_server &server, wlr_input_device *device)
{
    switch (device->type) {
    case WLR_INPUT_DEVICE_KEYBOARD:
        return server_new_keyboard(server, device);
    case WLR_INPUT_DEVICE_POINTER:
        return server_new_pointer(server, device);
    case WLR_INPUT_DEVICE_TOUCH:
        return server_new_touch(server, device);
    case WLR_INPUT_DEVICE_TABLET:
        return new_tablet(server, device);
    case WLR_INPUT_DEVICE_TABLET_PAD:
        wlr_log(WLR_INFO, "vantore-comp: tablet pad not yet mapped (%s)", device_name(device));
        return;
    case WLR_INPUT_DEVICE_SWITCH:
        return;
    }
}

static bool has_touch_device(vantore_server &server)
{
    for (auto &dev : each<&vantore_input_dev::link>(server.input_devs))
        if (dev.device->type == WLR_INPUT_DEVICE_TOUCH)
            return true;
    return false;
}

static void update_capabilities(vantore_server &server)
{
    uint32_t capabilities = WL_SEAT_CAPABILITY_POINTER;
    if (wl_list_empty(&server.keyboards) == 0)
        capabilities |= WL_SEAT_CAPABILITY_KEYBOARD;
    if (has_touch_device(server))
        capabilities |= WL_SEAT_CAPABILITY_TOUCH;
    wlr_seat_set_capabilities(server.seat, capabilities);
}

void server_new_input(vantore_server &server, wlr_input_device *device)
{
    input_dev_track(server, device);
    apply_libinput_settings(device);
    hand_to_subsystem(server, device);
    update_capabilities(server);
}

// The user of a remote session has a pointer and a keyboard. Clients should see just these, so the seat loses
// touch even when a touchscreen is attached.
void server_new_virtual_keyboard(vantore_server &server, wlr_virtual_keyboard_v1 *keyboard)
{
    server_new_keyboard(server, &keyboard->keyboard.base);
    wlr_seat_set_capabilities(server.seat, WL_SEAT_CAPABILITY_POINTER | WL_SEAT_CAPABILITY_KEYBOARD);
}

void server_new_virtual_pointer(vantore_server &server, wlr_virtual_pointer_v1_new_pointer_event *event)
{
    wlr_cursor_attach_input_device(server.cursor, &event->new_pointer->pointer.base);
}

// Returns null for the whole layout, and also while no output is on.
static const vantore_output *touch_target(vantore_server &server, wlr_input_device *device)
{
    const std::string_view wish = text_of(g_touch_output);
    if (wish == "desktop" || wish == "all" || wish == "whole")
        return nullptr;
    const bool automatic = wish.empty() || wish == "auto";
    const char *own = wlr_touch_from_input_device(device)->output_name;
    const std::string_view name = !automatic ? wish : own != nullptr ? own : "";
    const vantore_output *named = output_by_name(server, name);
    return named != nullptr ? named : resolve_primary_output(server);
}

void apply_touch_mapping(vantore_server &server)
{
    for (auto &dev : each<&vantore_input_dev::link>(server.input_devs)) {
        if (dev.device->type != WLR_INPUT_DEVICE_TOUCH)
            continue;
        const vantore_output *o = touch_target(server, dev.device);
        wlr_cursor_map_input_to_region(server.cursor, dev.device, nullptr);
        wlr_cursor_map_input_to_output(server.cursor, dev.device, o != nullptr ? o->wlr_output : nullptr);
    }
}
