// Chooses how the session renders: the safe-graphics flag, software rendering and the renderer itself.
#pragma once

#include "fwd.hpp"

#include <string_view>

inline bool g_soft_render; // a software renderer draws
inline bool g_safe_graphics; // the kernel command line contains "vantore.safe=1"

// Tells whether the first 4095 bytes of the kernel command line contain the text.
bool cmdline_has(const char *needle);

// Reads the kernel command line. If it asks for safe graphics, prepares the environment for software
// rendering. Call it before the backend is created.
void safe_graphics_detect();

// Whether this is how a renderer that draws in software calls itself.
bool is_software_renderer(std::string_view name);

// Notices a software renderer on a device of its own, which only its name tells. Call it when there is an
// allocator.
void notice_software_renderer(const vantore_server &server);

// Makes the renderer, which may be a software renderer if the user's environment allows that. Returns false
// and logs the reason if there is none.
bool renderer_create(vantore_server &server);

// Exports VANTORE_REDUCED_MOTION, which tells the programs that we start whether to leave out animations: "0"
// if we show them, otherwise "1". Call it after the settings are read.
void export_reduced_motion();
