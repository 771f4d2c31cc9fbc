// Files that are opened with care, and the process's limit of open descriptors. Each client takes several, so
// the session raises its limit as far as it may. Some programs can't cope with a large limit, so those that
// we start get the one that the session was started with.
#pragma once

#include "descriptor.hpp"

// Opens a file for reading. There is no descriptor if it is missing, unreadable or not a regular file,
// because a FIFO in its place would block.
descriptor open_regular_file(const char *path);

// Raises the limit to the hard limit and remembers what it was. Later calls in the same process do nothing.
void descriptors_raise_limit();

// Restores the limit. A child calls this before it becomes another program.
void descriptors_restore_limit();
