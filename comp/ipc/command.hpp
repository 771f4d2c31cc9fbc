// The command language: a verb and its words, split at blanks, without quoting.
#pragma once

#include "../fwd.hpp"

#include <string_view>

// Runs one command. A command that can't be done does nothing, and only the log tells of an unknown verb. The
// text ends at its first null byte.
void ipc_run_command(vantore_server &server, std::string_view text);
