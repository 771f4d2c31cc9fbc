// The window switcher: a list or a row of cards that a held modifier keeps open. Each press of the bound key
// selects another window, and the release of the modifier focuses it.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

#include <xkbcommon/xkbcommon.h>

// Opens the switcher or moves the selection. `mods` are the modifiers of the key binding: with Shift it goes
// backwards. Alt without Logo shows the windows of the current workspace as cards; everything else lists the
// windows of all workspaces on show. Does nothing if there are fewer than two.
void switcher_step(vantore_server &server, uint32_t mods);

// Closes the switcher. Unless it is cancelled, the selected window gets the focus. Does nothing while the
// switcher is closed.
void switcher_commit(vantore_server &server, bool cancel);

// Whether this key is one of the modifiers that keep the switcher open. False while it is closed.
bool switcher_is_held_by(const vantore_server &server, xkb_keysym_t sym);

// Call it when the modifiers of a keyboard have changed, or a keyboard has gone. A program that types tells
// its modifiers without key events.
void switcher_follow_modifiers(vantore_server &server);

// What a mode does.
void switcher_cancel(vantore_server &server);
void switcher_window_leaves(vantore_server &server, const vantore_toplevel &t);
void switcher_output_leaves(vantore_server &server, const wlr_output *output);
