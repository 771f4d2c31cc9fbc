// Powers the displays, which share one state, and lights them after a return from another virtual terminal.
#pragma once

#include "../fwd.hpp"

inline bool g_dpms_off; // outputs are powered down
inline bool g_dpms_inhibit; // keeps the displays on

// Powers all outputs up or down. While somebody keeps the displays on, every request powers them up.
void set_dpms(vantore_server &server, bool on);
// Powers down a new output that its backend has announced as lit while the others are dark, or that the user
// had turned off.
void power_follow(vantore_output &o);

// Turn one output on and off. While all are dark, one that is turned on waits for the others.
void output_turn_on(vantore_output &o);
void output_turn_off(vantore_output &o);
// Turns all outputs on if the user has turned off all that are left.
void keep_one_lit(vantore_server &server);
// Setting it powers dark displays up again. Clearing it powers nothing down.
void set_dpms_inhibit(vantore_server &server, bool on);

// Handles the session's active event: on return, lights the outputs again and puts back what they
// showed. Does nothing on leaving.
void handle_session_active(vantore_server &server);
