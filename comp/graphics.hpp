// Whether and how the session renders: the safe-graphics flag, software rendering, the renderer itself.
#pragma once

#include "fwd.hpp"

inline bool g_soft_render; // rendering is software
inline bool g_safe_graphics; // "vantore.safe=1" stood on the kernel command line

// Whether the text occurs in the first 4095 bytes of the kernel command line.
bool cmdline_has(const char *needle);

// Reads the kernel command line and prepares the environment for software rendering where it asks for that.
// Before the backend exists.
void safe_graphics_detect();

// Lets the renderer be software where the user allows it, then makes it. False, with the reason in the log,
// when there is none.
bool renderer_create(vantore_server &server);

// Whether programs that we start should move as we do: "0" in VANTORE_REDUCED_MOTION, else "1". Reads the
// settings.
void export_reduced_motion();
