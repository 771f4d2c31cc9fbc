// Gives memory back to the system after many windows have gone, because the allocator would keep it.
#pragma once

#include "fwd.hpp"

// Counts a window that has gone. When enough have gone, a trim follows some seconds later.
void memory_note_window_gone(vantore_server &server);

// Forgets the count and a pending trim. Call it at the start and before the event loop is destroyed.
void memory_trim_reset();
