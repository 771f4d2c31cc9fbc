// The command language: a verb and its words, split at blanks, without quoting.
#pragma once

#include "../fwd.hpp"

#include <string_view>

// Runs one command. What can't be done is left undone; only the log tells of an unknown verb. The text ends
// at its first null byte.
void ipc_run_command(vantore_server &server, std::string_view text);
