// A keyboard, physical or virtual, and the path that all of its keys take.
#pragma once

#include "../fwd.hpp"
#include "../records.hpp"

struct vantore_keyboard {
    list_link link; // server->keyboards, newest first
    vantore_server *server = nullptr;
    struct wlr_keyboard *wlr_keyboard = nullptr;
    listener modifiers, key, destroy;
    listener keymap; // of a virtual keyboard that has none yet
};

// Makes the record. The new keyboard becomes the seat's, a virtual one as soon as its client has given it a
// keymap. The record dies with its device.
void server_new_keyboard(vantore_server &server, wlr_input_device *device);
