// The X server for X11 clients. It starts when the first of them connects. When it is missing or crashes,
// only X11 windows are affected.
#pragma once

#include "../fwd.hpp"

// Offers a display to X11 clients and puts its name into the environment. Logs an error when there is none.
void xwayland_create(vantore_server &server);

// Ends the X server and all X11 windows. Must run before the seat is destroyed.
void xwayland_destroy(vantore_server &server);

// Starts a program that makes the output of the user's choice the primary one that X11 programs see. Must run
// again for each new output.
void apply_x_primary(vantore_server &server);
