// A listening socket in the event loop. While no descriptor is free it rests, instead of waking the loop
// again and again for a connection that can't be accepted.
#pragma once

#include "timer.hpp"

struct listening_socket {
    int fd = -1; // owned
    event_source source;
    timer_source rest; // after which it listens again
    void (*take)(void *data, int connection) = nullptr;
    void *data = nullptr;
};

// Listens on a bound socket, which it owns from now on. `take` is given each connection, close-on-exec and
// its own to keep. False, with nothing owned, when the loop can't hold it.
bool listening_start(listening_socket &l, wl_display *display, int fd,
                     void (*take)(void *data, int connection), void *data);
// Closes the socket. Does nothing for one that does not listen.
void listening_stop(listening_socket &l);
