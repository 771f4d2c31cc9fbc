// Pointer events that no pointer has sent: those of scripts, and of devices that stand in for a pointer. They
// use the seat that real devices use, so clients can't tell the difference.
#pragma once

#include "../fwd.hpp"

#include <cstdint>

// Puts the pointer on the point of the layout that lies nearest, and tells whoever is under it.
void synthetic_motion(vantore_server &server, double lx, double ly);

// A button of linux/input-event-codes.h goes to the client under the pointer, past title bars, bindings and
// drags of windows. A press focuses the window under the pointer first.
void synthetic_button(vantore_server &server, uint32_t button, bool pressed);
