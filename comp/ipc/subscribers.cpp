#include "subscribers.hpp"

#include "../server.hpp"
#include "client.hpp"
#include "frame.hpp"
#include "send.hpp"
#include "transport.hpp"

void ipc_tell_subscribers(vantore_server &server, vnt_event event)
{
    const ipc_header header = ipc_make_header(event | ipc_event_bit, 0);
    for (auto &client : each<&vnt_ipc_client::link>(server.ipc.ipc_clients)) {
        if (!client.subscribed || client.dead)
            continue;
        if (!ipc_write_all(client.fd, header.data(), header.size()))
            ipc_client_dispose(client);
    }
}
