// The program's own timers. All are armed through one function, which tests replace to fire them at exact
// times.
#pragma once

#include "handles.hpp"

void timer_remove(wl_event_source *source);

// Must be reset before the event loop dies.
using timer_source = handle<wl_event_source, timer_remove>;

// Unarmed. Null when the event loop can't hold it. `fire` returns 0.
timer_source timer_create(wl_display *display, int (*fire)(void *data), void *data);

// Fires once, in so many milliseconds from now; 0 disarms. A null timer does nothing.
void timer_arm(const timer_source &t, int ms);
