// The state of the IPC socket.
#pragma once

#include "../listening.hpp"
#include "../records.hpp"

#include <array>

struct vantore_ipc {
    listening_socket ipc_listen;
    std::array<char, 108> ipc_path{}; // empty without a socket
    list_head ipc_clients; // vnt_ipc_client.link
};
