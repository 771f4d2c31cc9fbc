// Keyboard focus of windows. The seat holds the focus, and server.toplevels holds the order in which windows
// were raised. The two can differ.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

// Returns the window that was raised last, which may be hidden and need not have the keyboard. Null when
// there is none.
vantore_toplevel *focused_toplevel(vantore_server &server);
// Returns the window that the actions of keys change: the one raised last, or null if it can't be seen. No
// key may close or move a window on a hidden workspace.
vantore_toplevel *action_target(vantore_server &server);

// Gives the window the keyboard and makes it the only active window. Windows get the keyboard only here. With
// `raise`, it also puts the window on top, with its dialogs above it, and at the head of server.toplevels.
// Does nothing for null, for an unmapped window, or while the session is locked.
void focus_toplevel_ex(vantore_toplevel *t, bool raise);

// Whether the surface has the keyboard. False for null.
bool has_keyboard(const vantore_server &server, const wlr_surface *surface);

// Gives the surface the keyboard, even while a menu or a drag holds it back. Does not tell the previous
// window that it is no longer active.
void keyboard_enter(wlr_seat *seat, wlr_surface *surface);

// Tells the client that has the keyboard that no key is down any more, because it missed releases. Does
// nothing when no client has it.
void keyboard_lift_keys(wlr_seat *seat);

// The same as keyboard_enter, except that a menu or a drag that holds the keyboard back keeps it.
void keyboard_offer(wlr_seat *seat, wlr_surface *surface);

// Tells the window of this surface that it is not active any more. Does nothing for null and other surfaces.
void deactivate_window(wlr_surface *surface);

// Takes the keyboard from whatever has it, and ends the pointer constraint. No window is active then.
void focus_clear(vantore_server &server);

// Focuses the visible window raised last, without raising it. Without one, the seat's focus stays.
void focus_top_toplevel(vantore_server &server);

// Gives the keyboard back to the window that had it before a panel or a menu took it. If that window is not
// visible, calls focus_top_toplevel.
void focus_back(vantore_server &server);

// Whether a window has the keyboard and can't be seen.
bool focus_is_hidden(vantore_server &server);

// Calls focus_top_toplevel if the window that has the keyboard is not visible any more.
void focus_top_if_hidden(vantore_server &server);
