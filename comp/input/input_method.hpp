// The input method that may read the keyboard before the focused client does.
#pragma once

#include "../fwd.hpp"
#include "../wlr.hpp"

struct vantore_ime_relay {
    wlr_input_method_v2 *input_method = nullptr; // null while none is connected
};

// Returns null when keys go to the focused client.
wlr_input_method_keyboard_grab_v2 *input_method_grab(const vantore_server &server);
