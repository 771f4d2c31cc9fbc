// Keeps a client's mistake from ending the session.
#pragma once

#include "../wlr.hpp"

// The library maps the keymap file of a virtual keyboard and reads as many bytes as the client says. If the
// file is shorter, reading beyond its end kills the process with SIGBUS. After this call, we first copy each
// keymap into memory of our own. An error ends the client when its file is shorter than it said or not a
// regular file, or when the keymap is empty or larger than 16 MiB.
void guard_keymap_requests(wlr_virtual_keyboard_v1 *keyboard);
