// Keeps a client from bringing the session to a standstill.
#pragma once

#include "../fwd.hpp"

// The library walks a tree of subsurfaces at each commit, and its cost grows with the square of the depth.
// From now on a client that nests them more than 64 deep is ended with the protocol's error.
void guard_subsurface_requests(vantore_server &server);
