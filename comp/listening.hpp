// A listening socket in the event loop. It rests while no descriptor is free. Otherwise it would wake the
// loop again and again for a connection that can't be accepted.
#pragma once

#include "timer.hpp"

struct listening_socket {
    int fd = -1; // owned
    event_source source;
    timer_source rest; // listens again when it fires
    void (*take)(void *data, int connection) = nullptr;
    void *data = nullptr;
};

// Starts to listen on a bound socket and takes over `fd`. Each connection is passed to `take`, which owns it,
// and is close-on-exec. If the event loop can't hold the socket, returns false and leaves `fd` to the caller.
bool listening_start(listening_socket &l, wl_display *display, int fd,
                     void (*take)(void *data, int connection), void *data);
// Closes the socket. Does nothing if it does not listen.
void listening_stop(listening_socket &l);
