// The IPC socket and its connections.
#pragma once

#include "../fwd.hpp"

#include <array>
#include <sys/types.h>

// Returns the socket's path for a compositor with this process id. A path that does not fit is cut.
std::array<char, 108> ipc_socket_path(pid_t pid);

// Opens the socket and publishes its path as VANTORESOCK. A failure is logged, and the session goes on
// without the socket and the variable.
void ipc_init(vantore_server &server);
// Ends every connection and closes the socket. Does nothing if there is no socket.
void ipc_finish(vantore_server &server);

// Condemns a client. It gets no more events and none of its requests run any more. The event loop frees it
// later, when no function uses it. A second call is harmless.
void ipc_client_dispose(vnt_ipc_client &client);
