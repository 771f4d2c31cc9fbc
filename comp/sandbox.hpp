// Limits what programs in a sandbox can see.
#pragma once

#include "fwd.hpp"

// From now on, clients that connected through a security context see only the globals of the table in
// sandbox.cpp. These let a program show itself and be used. None of them shows or controls other programs.
void sandbox_filter_globals(vantore_server &server);
