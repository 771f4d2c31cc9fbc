// Looks at a client's requests before the library does.
#pragma once

#include "fwd.hpp"
#include "wlr.hpp"

#include <span>

struct request_guard {
    const char *interface; // of the objects whose requests it looks at
    // Gets every request, with the library's table of handlers as its first argument.
    wl_dispatcher_func_t dispatcher;
};

// From now on, each object of these interfaces that a client creates has its guard before its first request.
// The guards must live as long as the display.
void guard_requests(vantore_server &server, std::span<const request_guard> guards);
