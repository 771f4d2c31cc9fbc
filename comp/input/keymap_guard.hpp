// Keeps a client's mistake from ending the session.
#pragma once

#include "../wlr.hpp"

// The library maps the keymap that a virtual keyboard brings, and reads as many bytes as the client says:
// behind the end of a shorter file the process would die of SIGBUS. After this call, the keymap is read into
// memory of our own first. A client whose file is shorter, larger than 16 MiB or no file at all is ended with
// an error.
void guard_keymap_requests(wlr_virtual_keyboard_v1 *keyboard);
