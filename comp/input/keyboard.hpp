// A keyboard, physical or virtual, and the path that all of its keys take.
#pragma once

#include "../fwd.hpp"
#include "../records.hpp"

struct vantore_keyboard {
    list_link link; // server->keyboards, newest first
    vantore_server *server = nullptr;
    struct wlr_keyboard *wlr_keyboard = nullptr;
    listener modifiers, key, destroy;
};

// Makes the record and puts the new keyboard on the seat. The record dies with its device.
void server_new_keyboard(vantore_server &server, wlr_input_device *device);
