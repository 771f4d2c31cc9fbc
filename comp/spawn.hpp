// Starting programs. Nothing here reports a failure: a program that can't be started is a program missing,
// and the shell's own message on stderr.
#pragma once

#include <sys/types.h>

// Runs a line with /bin/sh, detached: its own session, no zombie, nothing to reap. Blocks for the short
// life of an intermediate child.
void spawn_detached(const char *cmd);

// Runs a user's command line through the desktop's launcher, as one quoted argument. Null or empty does
// nothing; a line that would not fit into the launcher's 4096 bytes is cut.
void spawn_app(const char *cmd);

// Runs a program of PATH in the same way, without a shell. The name and the arguments end with a null.
void spawn_program(const char *const argv[]);

// The real forks behind these; everything else calls those.
void fork_shell_line(const char *line);
void fork_program(const char *const argv[]);
// A direct child, which the caller reaps; -1 when there can be none.
pid_t fork_child(const char *line);
