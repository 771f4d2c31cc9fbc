// Announces changes to everybody who registered for them. The code that announces a change does not know the
// receivers: the IPC socket and the writers of state files register themselves.
#pragma once

#include "events.hpp"
#include "fwd.hpp"

using broadcast_receiver = void (*)(vantore_server &server, vnt_event event);

// The receiver hears every event from now on, after those that registered before it. Registering it again
// changes nothing. There is room for four receivers; a fifth is ignored.
void broadcast_listen(broadcast_receiver receiver);
// Ignores a receiver that is not registered.
void broadcast_unlisten(broadcast_receiver receiver);

// Calls every receiver before it returns.
void ipc_broadcast(vantore_server &server, vnt_event event);
