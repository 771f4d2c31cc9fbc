#include "subscribers.hpp"

#include "../server.hpp"
#include "client.hpp"
#include "protocol.hpp"
#include "send.hpp"

void ipc_tell_subscribers(vantore_server &server, vnt_event event)
{
    for (auto &client : each<&vnt_ipc_client::link>(server.ipc.ipc_clients))
        if (client.subscribed && !client.dead)
            ipc_send_event(client, event | ipc_event_bit);
}
