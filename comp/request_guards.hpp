// Looks at a client's requests before the library does.
#pragma once

#include "fwd.hpp"
#include "wlr.hpp"

#include <span>
#include <type_traits>

// Gets every request to an object, with the library's table of handlers as its first argument.
using request_dispatcher = std::remove_pointer_t<wl_dispatcher_func_t>;

struct request_guard {
    const char *interface; // of the objects whose requests the dispatcher gets
    request_dispatcher *dispatcher;
};

// From now on, each object of these interfaces that a client creates has its guard before its first request.
// The guards must live as long as the display.
void guard_requests(vantore_server &server, std::span<const request_guard> guards);
