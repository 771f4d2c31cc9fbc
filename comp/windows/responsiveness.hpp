// Windows whose client does not answer any more, and those that come back.
#pragma once

#include "../fwd.hpp"

// Handler of the ping time-out: the title says from now on that the window does not respond.
void tl_handle_ping_timeout(vantore_toplevel &t);

// A commit: a window that was taken for hung is back.
void tl_note_sign_of_life(vantore_toplevel &t);
