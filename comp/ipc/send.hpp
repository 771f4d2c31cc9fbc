// Frames on their way to a client. No socket is ever waited for: what it can't take at once is not sent.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

// False when not everything could be written at once.
bool ipc_write_all(int fd, const char *data, size_t length);

// A reply for which there is no room is cut where the room ends.
void ipc_send_reply(int fd, uint32_t type, std::string_view payload);

// The same with a descriptor, -1 for none. The caller keeps it.
void ipc_send_reply_fd(int fd, uint32_t type, std::string_view payload, int out_fd);
// The same with several descriptors. More than four are cut to four.
void ipc_send_reply_fds(int fd, uint32_t type, std::string_view payload, std::span<const int> fds);

// 1 when the whole frame went out, -1 when a part of it did, so that the stream is damaged, 0 when nothing
// did.
int ipc_push_fds(int fd, uint32_t type, std::string_view payload, std::span<const int> fds);
