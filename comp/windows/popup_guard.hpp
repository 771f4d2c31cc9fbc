// Keeps a client's mistake from ending the session.
#pragma once

#include "../wlr.hpp"

// A request_guard for xdg_popup. The library asserts that a popup has had its first commit when a client
// repositions it, and it loses track of a popup that a client grabs twice. Here a reposition request before
// the first commit is ignored, and a second grab ends the client with the protocol's error. All other
// requests reach the library.
int dispatch_popup_request(const void *implementation, void *resource, uint32_t opcode,
                           const wl_message *message, wl_argument *arguments);
