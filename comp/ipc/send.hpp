// Frames on their way to a client. No socket is ever waited for: of a reply, what the socket can't take at
// once is kept and sent when there is room.
#pragma once

#include "../fwd.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

inline constexpr size_t ipc_most_kept = 8 * 1024 * 1024; // bytes that may wait for a client

// A reply, with up to four descriptors, which stay the caller's. A client for which too much waits already is
// condemned, and so is one whose connection has ended.
void ipc_reply(vnt_ipc_client &client, uint32_t type, std::string_view payload,
               std::span<const int> fds = {});

// An event. It follows what waits for the client; otherwise a client that can't take it at once is condemned.
void ipc_send_event(vnt_ipc_client &client, uint32_t type);

// Something that is not worth waiting for, with up to four descriptors. 1 when the whole frame went out, -1
// when a part of it did, so that the stream is damaged, 0 when nothing did, as with a client for which
// something waits.
int ipc_push_fds(vnt_ipc_client &client, uint32_t type, std::string_view payload, std::span<const int> fds);

// The socket has room again: sends on what waits.
void ipc_send_rest(vnt_ipc_client &client);
