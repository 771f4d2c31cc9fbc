// Limits what programs in a sandbox can see.
#pragma once

#include "fwd.hpp"
#include "wlr.hpp"

// From now on, clients that connected through a security context see only the globals of the table in
// sandbox.cpp. These let a program show itself and be used. None of them shows or controls other programs.
void sandbox_filter_globals(vantore_server &server);

// A request_guard for wp_security_context_manager_v1. The library
// forgets both descriptors of a request that it refuses. Here they are closed, and the client ends with the
// protocol's error.
int dispatch_security_manager_request(const void *implementation, void *resource, uint32_t opcode,
                                      const wl_message *message, wl_argument *arguments);
