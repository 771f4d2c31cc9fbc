// Sends frames to a client. No function waits for a socket: it keeps the part of a reply that the socket
// can't take at once, and sends it when there is room.
#pragma once

#include "../fwd.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

inline constexpr size_t ipc_most_kept = 8 * 1024 * 1024; // bytes that may wait for a client

// Sends a reply with up to four descriptors, which stay the caller's. Condemns the client if too much waits
// for it already or its connection has ended.
void ipc_reply(vnt_ipc_client &client, uint32_t type, std::string_view payload,
               std::span<const int> fds = {});

// Sends an event. If something waits for the client, the event waits behind it. Otherwise a client that can't
// take the event at once is condemned.
void ipc_send_event(vnt_ipc_client &client, uint32_t type);

// Tells whether nothing waits for the client and it has read all but the last few frames that were sent.
bool ipc_keeps_up(const vnt_ipc_client &client);

// Sends something that is not worth waiting for, with up to four descriptors, which stay the caller's.
// Returns 1 if the whole frame went out, and -1 if only a part did, which damages the stream. Returns 0 if
// nothing did, which is always so while something waits for the client.
int ipc_push_fds(vnt_ipc_client &client, uint32_t type, std::string_view payload, std::span<const int> fds);

// Call it when the socket has room again. Sends as much as possible of what waits.
void ipc_send_rest(vnt_ipc_client &client);
