// Keeps a client's mistakes from using up the session's memory and descriptors.
#pragma once

#include "../wlr.hpp"

// A request_guard for zwlr_screencopy_frame_v1. The library never gives back a buffer that it refuses to copy
// into, so the memory and the descriptor of that buffer would outlive their client. Here it is given back.
int dispatch_screencopy_request(const void *implementation, void *resource, uint32_t opcode,
                                const wl_message *message, wl_argument *arguments);
