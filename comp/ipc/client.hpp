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

// Bytes that wait for room in the socket, and the descriptors that go with the first of them.
struct ipc_rest {
    std::string bytes;
    std::vector<descriptor> fds;
};

struct vnt_ipc_client {
    list_link link; // server->ipc.ipc_clients
    vantore_server *server = nullptr;
    int fd = -1;
    event_source src; // fires when fd is readable, or writable while rest is not empty
    wl_event_source *reap = nullptr; // the idle source that frees a condemned client
    handle<char, free> buf; // bytes read and not handled yet: the first len of cap
    size_t len = 0;
    size_t cap = 0;
    std::deque<ipc_rest> rest; // waits for room in the socket
    size_t rest_bytes = 0; // all bytes in rest
    bool subscribed = false; // receives events
    bool dead = false; // condemned: no longer served, freed at the next idle moment
};
