// The copy of the pointer on a mirror. The pointer is a plane of its own on most outputs, so the picture of
// an output does not contain it.
#pragma once

#include "../fwd.hpp"

bool has_pointer(const vantore_output &o);

// Shows the pointer's image on the mirror where the pointer is on the source, or hides the copy.
void mir_cursor_update(vantore_output &o, const vantore_output &src);
