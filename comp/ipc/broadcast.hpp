// One function that says "something changed".
#pragma once

#include "../fwd.hpp"
#include "protocol.hpp"

// Called with every event, by tests; null in the product.
inline void (*g_broadcast_observer)(vnt_event event);

// Tells subscribers of a change. Before the outputs event goes out, the outputs file is current. A subscriber
// that can't take the event at once is condemned: none is ever queued.
void ipc_broadcast(vantore_server &server, vnt_event event);
