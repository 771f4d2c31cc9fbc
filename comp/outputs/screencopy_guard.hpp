// Keeps a client's mistakes from using up the session's memory and descriptors.
#pragma once

#include "../request_guards.hpp"

// The dispatcher for zwlr_screencopy_frame_v1. The library never gives back a buffer that it refuses to copy
// into, so the memory and the descriptor of that buffer would outlive their client. Here it is given back.
request_dispatcher dispatch_screencopy_frame_request;
