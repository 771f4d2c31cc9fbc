// The picture of a mirror and the copy of the pointer on it. Where something is missing for a new picture,
// the last one stays.
#pragma once

#include "../fwd.hpp"

// For an output that mirrors a window.
void mir_update(vantore_output &o);
// For an output that mirrors another output. Draws only if that one has shown something new since.
void mir_update_output(vantore_output &o);
