// Starts programs. Nothing here reports a failure: if a program can't be started, it is simply missing. The
// shell prints its own message to stderr, and vantore-launch also tells the user.
#pragma once

#include <sys/types.h>

// Runs a line with /bin/sh in a session of its own and leaves no zombie to reap. Blocks for the short life of
// an intermediate child.
void spawn_detached(const char *cmd);

// Runs a user's command line through the desktop's launcher, which gets it as one quoted argument. Does
// nothing for null or an empty line. Cuts a line after about 4096 bytes, because
// another launcher in PATH may read no more.
void spawn_app(const char *cmd);

// Runs a program from PATH in the same way, without a shell. `argv` begins with the program's name and ends
// with null.
void spawn_program(const char *const argv[]);

// These really fork. g_platform calls them, and everything else calls the functions above.
void fork_shell_line(const char *line);
void fork_program(const char *const argv[]);
// Starts a direct child, which the caller reaps. Returns -1 on failure.
pid_t fork_child(const char *line);
