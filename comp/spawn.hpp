// Starts programs. Nothing here reports a failure: if a program can't be started, it is simply missing. For a
// shell line, the shell prints its own message to stderr.
#pragma once

#include <sys/types.h>

// Runs a line with /bin/sh in a session of its own and leaves no zombie to reap. Blocks for the short life of
// an intermediate child.
void spawn_detached(const char *cmd);

// Runs a user's command line through the desktop's launcher, which gets it as one quoted argument. Null or
// empty does nothing. A line that does not fit into the launcher's 4096 bytes is cut.
void spawn_app(const char *cmd);

// Runs a program from PATH in the same way, without a shell. A null ends the list of the name and the
// arguments.
void spawn_program(const char *const argv[]);

// The real forks. g_platform calls them, and everything else calls the functions above.
void fork_shell_line(const char *line);
void fork_program(const char *const argv[]);
// A direct child, which the caller reaps; -1 when there can be none.
pid_t fork_child(const char *line);
