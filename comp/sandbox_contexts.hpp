// The global with which sandboxes register their programs, wp_security_context_v1.
#pragma once

#include "fwd.hpp"
#include "wlr.hpp"

// Offers the global. A sandbox hands over a listening socket. Whoever connects to it is a sandboxed client,
// until the other end of a second descriptor is closed. Returns false if there is no memory for the global.
bool sandbox_contexts_begin(vantore_server &server);
// Closes the sockets of all sandboxes. Clients that are connected stay.
void sandbox_contexts_end(vantore_server &server);

// Whether the client connected through a sandbox's socket.
bool is_sandboxed(const wl_client *client);
