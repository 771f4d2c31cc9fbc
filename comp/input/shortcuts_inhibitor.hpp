// Clients that want the compositor's shortcuts for themselves, such as remote desktops.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Grants the inhibitor at once. Only the latest one is in force. When it goes, no earlier one comes back.
void server_new_shortcuts_inhibitor(vantore_server &server, wlr_keyboard_shortcuts_inhibitor_v1 *inhibitor);
