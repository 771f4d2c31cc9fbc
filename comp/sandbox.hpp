// What programs in a sandbox get to see.
#pragma once

#include "fwd.hpp"

// From now on clients that connected through a security context see only the globals of the table in
// sandbox.cpp: what a program needs to show itself and to be used, and nothing that shows or controls other
// programs.
void sandbox_filter_globals(vantore_server &server);
