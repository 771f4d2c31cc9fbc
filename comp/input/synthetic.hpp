// Pointer events that come from scripts, or from devices that stand in for a pointer. They use the seat that
// real pointers use, so clients can't tell the difference.
#pragma once

#include "../fwd.hpp"

#include <cstdint>

// Moves the pointer to the nearest point of the layout and tells the client under it.
void synthetic_motion(vantore_server &server, double lx, double ly);

// Sends a button of linux/input-event-codes.h to the client under the pointer. Title bars, bindings and drags
// of windows don't see it. A press first focuses the window under the pointer.
void synthetic_button(vantore_server &server, uint32_t button, bool pressed);
