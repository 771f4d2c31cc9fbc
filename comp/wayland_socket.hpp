// The socket that Wayland clients connect to: a name in XDG_RUNTIME_DIR that no other compositor has.
#pragma once

#include "listening.hpp"

#include <string>

struct wayland_socket {
    std::string name; // the value of WAYLAND_DISPLAY; empty without a socket
    std::string path;
    int lock = -1; // of PATH.lock, which says that the name is taken
    listening_socket listening;
};

// Opens the first of wayland-0 to wayland-32 that is free. False without a runtime directory and where all
// names are taken.
bool wayland_socket_open(wayland_socket &s, wl_display *display);
// Does nothing without one.
void wayland_socket_close(wayland_socket &s);
