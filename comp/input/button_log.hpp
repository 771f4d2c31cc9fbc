// Logs pointer buttons when the user asks for it.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Logs where the button goes in the present state.
void log_button(const vantore_server &server, const wlr_pointer_button_event &event);
