// A window that opens fades in. Only the buffer of its own surface does, not its title bar or its menus.
#pragma once

#include "../fwd.hpp"

#include <cstdint>

// Begins the fade of a window that has just been mapped and can be seen. Does nothing where animations are
// off, and for a fullscreen window.
void anim_open_start(vantore_toplevel &t);

// Ends the fade at full opacity. A window that becomes fullscreen, is minimized or is unmapped ends its fade.
// Does nothing when there is none.
void anim_open_end(vantore_toplevel &t);

// Call this after a commit of the window's surface, at which the scene sets the opacity anew.
void anim_open_hold(const vantore_toplevel &t);

// Advances all fades to a time of mono_ms. Returns false when none is left.
bool anim_open_advance(vantore_server &server, int64_t now);
