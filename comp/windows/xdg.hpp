// The life of an xdg-shell window, from the first commit to destruction.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

void server_new_xdg_toplevel(vantore_server &server, wlr_xdg_toplevel *xdg_toplevel);
