#include "broadcast.hpp"

#include <algorithm>
#include <array>

static constexpr size_t most_receivers = 4;

static std::array<broadcast_receiver, most_receivers> receivers; // free places are null

void broadcast_listen(broadcast_receiver receiver)
{
    if (std::ranges::contains(receivers, receiver))
        return;
    if (auto *const place = std::ranges::find(receivers, nullptr); place != receivers.end())
        *place = receiver;
}

// Moves the later receivers up, so that the order of registration stays.
void broadcast_unlisten(broadcast_receiver receiver)
{
    std::ranges::fill(std::ranges::remove(receivers, receiver), nullptr);
}

void ipc_broadcast(vantore_server &server, vnt_event event)
{
    for (const broadcast_receiver receiver : receivers)
        if (receiver != nullptr)
            receiver(server, event);
}
