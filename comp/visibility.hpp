// One call for whoever changes what can be seen.
#pragma once

#include "fwd.hpp"

// Due whenever a window may have come into sight or gone out of it: by its state, its workspace or its
// output, and when panels or the settings of effects have changed. Brings in line what depends on that.
void visible_changed(vantore_server &server);
