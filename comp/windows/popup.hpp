// Menus and tooltips of xdg-shell windows and of layer surfaces, kept on the screen.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Handles the shell's new_popup event. A popup without a parent waits for a layer surface to take it.
void server_new_xdg_popup(vantore_server &server, wlr_xdg_popup *popup);

// Ends the menus of the seat's grab unless they are this window's. Their client hears that they are done.
void end_menus_of_others(const vantore_toplevel &t);
// Ends the menus of the seat's grab if they belong to a window. Menus of panels stay.
void end_menus_of_windows(vantore_server &server);

// Shows the popup in this tree, whose place is that of its parent.
void popup_show(vantore_server &server, wlr_xdg_popup &popup, wlr_scene_tree *parent);

// Whether a menu of this layer surface has the keyboard.
bool popup_has_keyboard(const vantore_layer_surface &l);
