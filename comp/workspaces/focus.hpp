// Keyboard focus of windows. The seat holds the focus; server.toplevels holds the order of raising. The two
// are different things.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// The window that commands and bindings act on: the last raised one, which need not have the keyboard. Null
// when there is none.
vantore_toplevel *focused_toplevel(vantore_server &server);

// Gives the window the keyboard; with `raise` also puts it on top and at the head of server.toplevels. The
// only way a window takes the keyboard. Null does nothing, nor does
// any call while the session is locked.
void focus_toplevel_ex(vantore_toplevel *t, bool raise);

// Gives the surface the keyboard, also while a menu or a drag holds it back. What had it is not told that it
// is no longer active.
void keyboard_enter(wlr_seat *seat, wlr_surface *surface);

// The same, but a menu or a drag that holds the keyboard back keeps it.
void keyboard_offer(wlr_seat *seat, wlr_surface *surface);

// Takes the keyboard from whatever has it, and lets go of the pointer.
void focus_clear(vantore_server &server);

// Focuses the topmost visible window without raising it; without one the focus stays as the seat has it.
void focus_top_toplevel(vantore_server &server);
