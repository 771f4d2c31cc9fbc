// The program's own timers. One function arms them all, and tests replace it to fire timers at exact times.
#pragma once

#include "handles.hpp"

void timer_remove(wl_event_source *source);

// Reset it before the event loop is destroyed.
using timer_source = handle<wl_event_source, timer_remove>;

// Creates a timer that is not armed, or returns null if the event loop can't hold it. `fire` must return 0.
timer_source timer_create(wl_display *display, int (*fire)(void *data), void *data);

// Makes the timer fire once after this many milliseconds; 0 disarms it. A null timer does nothing.
void timer_arm(const timer_source &t, int ms);
