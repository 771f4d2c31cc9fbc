// Code that changes which windows can be seen makes this one call.
#pragma once

#include "fwd.hpp"

// Updates what depends on which windows can be seen. Call it when a window may have come into sight or gone
// out of it through its state, its workspace or its output, and when panels or the settings of effects have
// changed.
void visible_changed(vantore_server &server);
