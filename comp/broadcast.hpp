// The door through which every room says that something has changed. It knows nobody who listens: the IPC
// socket and the writers of state files register themselves.
#pragma once

#include "events.hpp"
#include "fwd.hpp"

using broadcast_receiver = void (*)(vantore_server &server, vnt_event event);

// The receiver hears every event from now on, after those that registered before it. Registering again
// changes nothing. At most four receivers are told.
void broadcast_listen(broadcast_receiver receiver);
// A receiver that is not registered is ignored.
void broadcast_unlisten(broadcast_receiver receiver);

// Returns when every receiver has been told.
void ipc_broadcast(vantore_server &server, vnt_event event);
