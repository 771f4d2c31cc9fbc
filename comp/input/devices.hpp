// Input devices from their appearance to their end.
#pragma once

#include "../fwd.hpp"
#include "../records.hpp"

// One for each device of the backend, of any type; those that clients make have none.
struct vantore_input_dev {
    list_link link; // server->input_devs, newest first
    wlr_input_device *device = nullptr;
    listener destroy;
};

// Handlers of the backend's new device and of those that clients make.
void server_new_input(vantore_server &server, wlr_input_device *device);
void server_new_virtual_keyboard(vantore_server &server, wlr_virtual_keyboard_v1 *keyboard);
void server_new_virtual_pointer(vantore_server &server, wlr_virtual_pointer_v1_new_pointer_event *event);

// Maps each touchscreen to the output that the user chose for touch, else to its own, else to the primary.
void apply_touch_mapping(vantore_server &server);
