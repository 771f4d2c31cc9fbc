// Menus and tooltips of xdg-shell windows, kept on the screen.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

void server_new_xdg_popup(vantore_server &server, wlr_xdg_popup *popup);
