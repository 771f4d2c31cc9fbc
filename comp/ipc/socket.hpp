// The state of the IPC socket.
#pragma once

#include "../records.hpp"

#include <array>

struct vantore_ipc {
    int ipc_listen_fd = -1;
    wl_event_source *ipc_listen_src = nullptr;
    std::array<char, 108> ipc_path{}; // empty without a socket
    list_head ipc_clients; // vnt_ipc_client.link
};
