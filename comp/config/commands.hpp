// The programs of the user's choice, looked up anew whenever one is started.
#pragma once

// The shell line that a symbolic command such as "$browser" stands for; every other text as it is. The result
// of "$terminal" is overwritten by the next call.
const char *vnt_spawn_command(const char *spawn);

// The terminal that defaults.conf names, then the usual ones, as a shell line that starts the first that
// there is. In a buffer that the next call overwrites. A choice that is more than a program's name or path is
// not taken: the shell would run it.
const char *vnt_terminal_cmd();
