// The process's limit of open descriptors. Each client takes several, so the session takes as many as it may
// have; what it starts gets the limit that the session was started with, because some programs can't cope
// with a large one.
#pragma once

// Raises the limit to the hard one and remembers what it was. Once in a process; later calls change nothing.
void descriptors_raise_limit();

// In a child, before it becomes another program: the limit as it was.
void descriptors_restore_limit();
