// One function that says "something changed".
#pragma once

#include "../fwd.hpp"

// The numbers are those of the IPC protocol.
enum vnt_event : int {
    VNT_EVT_WORKSPACES = 1,
    VNT_EVT_WINDOWS = 2,
    VNT_EVT_OUTPUTS = 3,
    VNT_EVT_LAUNCHER = 4, // asks the shell for its launcher
    VNT_EVT_SHORTCUTS = 8, // shows or hides the shortcuts overlay
};

// Called with every event, by tests; null in the product.
inline void (*g_broadcast_observer)(vnt_event event);

// Tells subscribers of a change. Before the outputs event goes out, the outputs file is current.
void ipc_broadcast(vantore_server &server, vnt_event event);
