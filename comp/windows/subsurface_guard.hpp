// Keeps a client from bringing the session to a standstill.
#pragma once

#include "../fwd.hpp"

// The library walks a tree of subsurfaces at each commit, and the cost grows with the square of the depth.
// After this call, a client that nests subsurfaces more than 64 deep is ended with the protocol's error.
void guard_subsurface_requests(vantore_server &server);
