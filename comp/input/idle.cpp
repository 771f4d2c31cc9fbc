#include "idle.hpp"

#include "../server.hpp"

void idle_poke(vantore_server &server)
{
    if (server.idle_notifier != nullptr)
        wlr_idle_notifier_v1_notify_activity(server.idle_notifier, server.seat);
}
