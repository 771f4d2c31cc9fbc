#include "input_method.hpp"

#include "../server.hpp"

wlr_input_method_keyboard_grab_v2 *input_method_grab(const vantore_server &server)
{
    const vantore_ime_relay *ime = server.ime;
    return ime != nullptr && ime->input_method != nullptr ? ime->input_method->keyboard_grab : nullptr;
}
