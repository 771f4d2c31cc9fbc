// One connection to the IPC socket.
#pragma once

#include "../fwd.hpp"
#include "../handles.hpp"
#include "../records.hpp"

#include "../descriptor.hpp"

#include <cstdlib>
#include <deque>
#include <string>
#include <vector>

// Bytes that wait for room in the socket, and descriptors that go with the first of them.
struct ipc_rest {
    std::string bytes;
    std::vector<descriptor> fds;
};

struct vnt_ipc_client {
    list_link link; // server->ipc.ipc_clients
    vantore_server *server = nullptr;
    int fd = -1;
    event_source src; // fd is readable
    wl_event_source *reap = nullptr; // idle, while condemned
    handle<char, free> buf; // what was read and not handled yet: the first len of cap bytes
    size_t len = 0;
    size_t cap = 0;
    std::deque<ipc_rest> rest; // what waits for room
    size_t rest_bytes = 0; // in all of it
    bool subscribed = false; // receives events
    bool dead = false; // condemned: goes at the next idle moment, and is served no more
};
