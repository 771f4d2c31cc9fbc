// When panels and other layer surfaces take the keyboard, and when they give it back.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Gives the keyboard to a surface that has just appeared and takes it on demand, if the user protects the
// focus.
void layer_take_keyboard_on_demand(vantore_layer_surface &l);

// Does the same for a surface that was pressed. Does nothing for other surfaces.
void layer_pressed(wlr_surface *surface);

// Gives or takes the keyboard as the surface's last commit asks.
void layer_update_keyboard(vantore_layer_surface &l);

// Gives the keyboard to the surface if it wants the keyboard, otherwise back to the window that had
// it. For a menu of the surface that closes while it has the keyboard.
void layer_take_keyboard_back(vantore_layer_surface &l);
