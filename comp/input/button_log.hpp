// What the log says of pointer buttons when the user asks for it.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Where the button goes as things stand now.
void log_button(const vantore_server &server, const wlr_pointer_button_event &event);
