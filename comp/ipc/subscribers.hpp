// The clients that asked to hear of changes.
#pragma once

#include "../events.hpp"
#include "../fwd.hpp"

// A receiver of broadcasts: sends the event to every subscriber. One that can't take it at once is condemned;
// events are never queued.
void ipc_tell_subscribers(vantore_server &server, vnt_event event);
