// Input devices, from their appearance to their removal.
#pragma once

#include "../fwd.hpp"
#include "../records.hpp"

// Every device of the backend has such a record, whatever its type. Devices that clients make have none.
struct vantore_input_dev {
    list_link link; // server->input_devs, newest first
    wlr_input_device *device = nullptr;
    listener destroy;
};

// Handle new devices of the backend and devices that clients make.
void server_new_input(vantore_server &server, wlr_input_device *device);
void server_new_virtual_keyboard(vantore_server &server, wlr_virtual_keyboard_v1 *keyboard);
void server_new_virtual_pointer(vantore_server &server, wlr_virtual_pointer_v1_new_pointer_event *event);

// Maps each touchscreen to the user's choice, which is an output or the whole layout. Without a choice, the
// touchscreen gets its own output. If the output is missing, it gets the primary one.
void apply_touch_mapping(vantore_server &server);
