// Menus and tooltips of xdg-shell windows, kept on the screen.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

void server_new_xdg_popup(vantore_server &server, wlr_xdg_popup *popup);

// Ends the menus of the seat's grab unless they are this window's. Their client hears that they are done.
void end_menus_of_others(const vantore_toplevel &t);
