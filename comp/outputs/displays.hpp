// Commands for outputs, and the arrangement of displays that the user has saved for those that are connected.
#pragma once

#include "../fwd.hpp"

#include <string_view>

// Runs the steps on the output of this name or id. An unknown output is logged.
void ipc_output_command(vantore_server &server, std::string_view token, std::string_view steps);

// Applies the saved arrangement that fits the connected displays, if there is one. While all displays are
// dark, it waits until they are turned on.
void displays_autoapply(vantore_server &server);

// Applies what displays_autoapply has left for when the displays are turned on.
void displays_catch_up(vantore_server &server);
