// The X server for X11 clients. It is started when the first of them connects; without it, or when it
// crashes, only X11 windows are missing.
#pragma once

#include "../fwd.hpp"

// Offers a display to X11 clients and puts its name into the environment. Logs when there is none.
void xwayland_create(vantore_server &server);

// Ends the X server and all X11 windows. Before the seat goes.
void xwayland_destroy(vantore_server &server);

// Starts a program that makes the output of the user's choice the primary one that X11 programs see. Due
// again with each new output.
void apply_x_primary(vantore_server &server);
