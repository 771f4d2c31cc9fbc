// Gives memory back to the system after many windows have gone: the allocator keeps it otherwise.
#pragma once

#include "fwd.hpp"

// Counts a window that has gone; enough of them arm a trim some seconds later.
void memory_note_window_gone(vantore_server &server);

// Forgets a pending trim and the count. At the start and before the event loop goes.
void memory_trim_reset();
