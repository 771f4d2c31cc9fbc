// Display power: one state for all outputs, and the return from another virtual terminal.
#pragma once

#include "../fwd.hpp"

inline bool g_dpms_off; // outputs are powered down
inline bool g_dpms_inhibit; // somebody keeps the displays on

// Powers all outputs up or down. While inhibited every request means up.
void set_dpms(vantore_server &server, bool on);
// Setting it brings dark displays back; clearing it powers nothing down.
void set_dpms_inhibit(vantore_server &server, bool on);

// Handler of the session's active event: lights the outputs again on return, does nothing on leaving.
void handle_session_active(vantore_server &server);
