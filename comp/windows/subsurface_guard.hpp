// Keeps deep trees of subsurfaces from bringing the session to a standstill.
#pragma once

#include "../request_guards.hpp"

// The dispatcher for wl_subcompositor. The library walks a tree of subsurfaces at each commit, and the cost
// grows with the square of the depth. A client that nests subsurfaces more than 64 deep is ended with the
// protocol's error.
request_dispatcher dispatch_subcompositor_request;
