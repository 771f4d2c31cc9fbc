// Commands that act on windows. "id:N" names one window, and "app:NAME" names every window of that app id.
#pragma once

#include "../fwd.hpp"
#include "request_text.hpp"

enum vnt_winop : unsigned char { VNT_OP_CLOSE, VNT_OP_FLOAT, VNT_OP_MOVE, VNT_OP_MINIMIZE };

// Takes the selector and the operation's argument from the next words. If the selector names no window,
// nothing happens.
void ipc_run_window_op(vantore_server &server, vnt_winop op, ipc_words &words);

template <vnt_winop Op> void ipc_window_op(vantore_server &server, ipc_words &words)
{
    ipc_run_window_op(server, Op, words);
}

// Focuses the window that the next word names by its id. If its workspace is on no output, the current output
// shows it first.
void ipc_focus_window(vantore_server &server, ipc_words &words);
