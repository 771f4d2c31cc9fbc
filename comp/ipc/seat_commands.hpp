// The verb `seat`, with which scripts move the pointer and press its buttons. It uses the same seat as real
// devices, so clients can't tell the difference.
//
// Buttons and the wheel go to the client under the pointer. Title bars, bindings and drags of windows never
// see them.
#pragma once

#include "../fwd.hpp"
#include "request_text.hpp"

// Takes the words after `seat`. Missing words get their defaults, and unknown subcommands do nothing.
void ipc_seat_command(vantore_server &server, ipc_words &words);
