// The IPC socket and its connections.
#pragma once

#include "../fwd.hpp"

#include <array>
#include <sys/types.h>

// Where a compositor of this process id puts its socket; cut where it does not fit.
std::array<char, 108> ipc_socket_path(pid_t pid);

// Opens the socket and publishes its path as VANTORESOCK. A failure is logged, and the session goes on
// without the socket and without the variable.
void ipc_init(vantore_server &server);
// Ends every connection and the socket. Does nothing without a socket.
void ipc_finish(vantore_server &server);

// Condemns a client: it gets no more events, no more of its requests are run, and it is freed when nothing of
// it is on the stack any more. Idempotent.
void ipc_client_dispose(vnt_ipc_client &client);
