#include "broadcast.hpp"

#include "../session/state_files.hpp"

void ipc_broadcast(vantore_server &server, vnt_event event)
{
    if (event == VNT_EVT_OUTPUTS)
        write_outputs_file(server);
    if (g_broadcast_observer != nullptr)
        g_broadcast_observer(event);
}
