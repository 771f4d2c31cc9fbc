// The verb `seat`: a script's hand on the pointer. It uses the seat that real devices use, so that clients
// can't tell the difference.
//
// Buttons and the wheel go to the client under the pointer, past title bars, bindings and drags of windows.
#pragma once

#include "../fwd.hpp"
#include "request_text.hpp"

// The words are those behind `seat`. What they don't say takes its default; unknown subcommands do nothing.
void ipc_seat_command(vantore_server &server, ipc_words &words);
