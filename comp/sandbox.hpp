// Limits what programs in a sandbox can see.
#pragma once

#include "fwd.hpp"
#include "request_guards.hpp"

// From now on, clients that connected through a security context see only the globals of the table in
// sandbox.cpp. These let a program show itself and be used. None of them shows or controls other programs.
void sandbox_filter_globals(vantore_server &server);

// The dispatcher for wp_security_context_manager_v1. The library forgets both descriptors of a request that
// it refuses. Here they are closed, and the client ends with the protocol's error.
request_dispatcher dispatch_security_context_request;
