// Tells the clients that have subscribed about changes.
#pragma once

#include "../events.hpp"
#include "../fwd.hpp"

// Receives broadcasts and sends the event to every subscriber. Events are never queued: a subscriber that
// can't take one at once is condemned.
void ipc_tell_subscribers(vantore_server &server, vnt_event event);
