// Applies the gamma tables that clients set, such as night-light programs.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Handles the gamma-control manager's set_gamma event. A table that the output refuses never reaches the
// screen, and its client is told.
void server_gamma_set(vantore_server &server, wlr_gamma_control_manager_v1_set_gamma_event *event);
