// Keeps a panel's dismissed menu from ending the session.
#pragma once

#include "../request_guards.hpp"

// The dispatcher for zwlr_layer_surface_v1. The library assumes that a popup still exists when a client puts
// it under a layer surface. Here such a request is ignored when the popup was dismissed. All others reach the
// library.
request_dispatcher dispatch_layer_surface_request;
