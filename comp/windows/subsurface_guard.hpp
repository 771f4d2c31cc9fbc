// Keeps a client from bringing the session to a standstill.
#pragma once

#include "../wlr.hpp"

// A request_guard for wl_subcompositor. The library walks a tree of
// subsurfaces at each commit, and the cost grows with the square of the depth. A client that nests
// subsurfaces more than 64 deep is ended with the protocol's error.
int dispatch_subcompositor_request(const void *implementation, void *resource, uint32_t opcode,
                                   const wl_message *message, wl_argument *arguments);
