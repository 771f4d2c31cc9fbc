// Looks up the programs of the user's choice, anew for every start.
#pragma once

// Returns the shell line for a symbolic command such as "$browser", and any other text unchanged. The next
// call may overwrite the result for "$terminal".
const char *vnt_spawn_command(const char *spawn);

// Returns a shell line that tries the terminal of defaults.conf first and then the usual ones. The next call
// may overwrite it. A choice that is more than a program's name or path is ignored, because the shell would
// run the rest.
const char *vnt_terminal_cmd();
