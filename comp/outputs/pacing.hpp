// When and how an output paints.
#pragma once

#include "../fwd.hpp"

// Handler of the output's frame event.
void output_frame(vantore_output &o);
