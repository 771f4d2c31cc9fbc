// The life of an xdg-shell window, from its creation to its destruction.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

void server_new_xdg_toplevel(vantore_server &server, wlr_xdg_toplevel *xdg_toplevel);
