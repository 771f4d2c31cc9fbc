// The socket that Wayland clients connect to. Its name in XDG_RUNTIME_DIR is one that no other compositor
// uses.
#pragma once

#include "listening.hpp"

#include <string>

struct wayland_socket {
    std::string name; // the value of WAYLAND_DISPLAY; empty without a socket
    std::string path;
    int lock = -1; // holds the lock on PATH.lock, which reserves the name
    listening_socket listening;
};

// Opens the first of wayland-0 to wayland-32 that is free. Returns false if there is no runtime directory or
// all names are taken.
bool wayland_socket_open(wayland_socket &s, wl_display *display);
// Does nothing if no socket is open.
void wayland_socket_close(wayland_socket &s);
