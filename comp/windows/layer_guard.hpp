// Keeps a client's mistake from ending the session.
#pragma once

#include "../wlr.hpp"

// A request_guard for zwlr_layer_surface_v1. The library assumes that a popup still exists when a client puts
// it under a layer surface. Here such a request is ignored when the popup was dismissed. All others reach the
// library.
int dispatch_layer_request(const void *implementation, void *resource, uint32_t opcode,
                           const wl_message *message, wl_argument *arguments);
