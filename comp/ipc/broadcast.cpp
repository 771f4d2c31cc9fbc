#include "broadcast.hpp"

#include "../server.hpp"
#include "../session/state_files.hpp"
#include "client.hpp"
#include "frame.hpp"
#include "send.hpp"
#include "transport.hpp"

static void send_to_subscribers(vantore_server &server, vnt_event event)
{
    const ipc_header header = ipc_make_header(event | ipc_event_bit, 0);
    for (auto &client : each<&vnt_ipc_client::link>(server.ipc_clients)) {
        if (!client.subscribed || client.dead)
            continue;
        if (!ipc_write_all(client.fd, header.data(), header.size()))
            ipc_client_dispose(client);
    }
}

void ipc_broadcast(vantore_server &server, vnt_event event)
{
    if (event == VNT_EVT_OUTPUTS)
        write_outputs_file(server);
    if (g_broadcast_observer != nullptr)
        g_broadcast_observer(event);
    send_to_subscribers(server, event);
}
