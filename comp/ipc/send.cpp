// Each client has a queue of pieces that wait for room in its socket. A piece holds duplicates of the
// caller's descriptors. They travel with its first byte and are closed after that byte has gone out.

#include "send.hpp"

#include "../platform.hpp"
#include "client.hpp"
#include "frame.hpp"
#include "transport.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

static constexpr size_t most_descriptors = 4;
static constexpr ptrdiff_t most_waiting_pictures = 16;
static constexpr int most_unread = 16 * 1024; // bytes of kernel memory, so about 16 short frames

using control_space = std::array<char, CMSG_SPACE(sizeof(int) * most_descriptors)>;

// `control` must live as long as the message.
static void attach_descriptors(msghdr &message, control_space &control, std::span<const int> fds)
{
    fds = fds.first(std::min(fds.size(), most_descriptors));
    if (fds.empty())
        return;
    message.msg_control = control.data();
    message.msg_controllen = CMSG_SPACE(fds.size_bytes());
    cmsghdr *rights = CMSG_FIRSTHDR(&message);
    rights->cmsg_level = SOL_SOCKET;
    rights->cmsg_type = SCM_RIGHTS;
    rights->cmsg_len = CMSG_LEN(fds.size_bytes());
    memcpy(CMSG_DATA(rights), fds.data(), fds.size_bytes());
}

// Returns how many bytes went out, or -1 on an error. The error is EAGAIN if the socket has no room.
static ssize_t send_some(int fd, std::string_view bytes, std::span<const int> fds)
{
    iovec piece{.iov_base = const_cast<char *>(bytes.data()), .iov_len = bytes.size()};
    msghdr message{};
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    alignas(cmsghdr) control_space control{};
    attach_descriptors(message, control, fds);
    ssize_t sent = 0;
    do {
        sent = g_platform.send_message(fd, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
    } while (sent < 0 && errno == EINTR);
    return sent;
}

static std::string make_frame(uint32_t type, std::string_view payload)
{
    const ipc_header header = ipc_make_header(type, uint32_t(payload.size()));
    std::string frame{header.data(), header.size()};
    frame += payload;
    return frame;
}

static void watch_for_room(vnt_ipc_client &client)
{
    const uint32_t room = client.rest.empty() ? 0 : uint32_t{WL_EVENT_WRITABLE};
    wl_event_source_fd_update(client.src.get(), WL_EVENT_READABLE | room);
}

// Each waiting picture holds its memory, which its few bytes in the queue don't show.
static bool has_room_for(const vnt_ipc_client &client, std::string_view bytes, std::span<const int> fds)
{
    if (client.rest_bytes + bytes.size() > ipc_most_kept)
        return false;
    return fds.empty() || std::ranges::count_if(client.rest, [](const ipc_rest &piece) {
                              return !piece.fds.empty();
                          }) < most_waiting_pictures;
}

// Returns false if the client's queue is too long already, or no descriptor is free for a duplicate. The
// caller then gives the client up: a reply without its descriptor would be worse than none.
static bool keep(vnt_ipc_client &client, std::string_view bytes, std::span<const int> fds)
{
    if (!has_room_for(client, bytes, fds))
        return false;
    ipc_rest piece{.bytes = std::string{bytes}, .fds = {}};
    for (const int fd : fds.first(std::min(fds.size(), most_descriptors)))
        if (piece.fds.emplace_back(fcntl(fd, F_DUPFD_CLOEXEC, 0)).fd < 0)
            return false;
    client.rest_bytes += bytes.size();
    client.rest.push_back(std::move(piece));
    watch_for_room(client);
    return true;
}

// Returns false if the connection has ended or the client's queue is too long.
static bool send_or_keep(vnt_ipc_client &client, std::string_view frame, std::span<const int> fds)
{
    if (!client.rest.empty())
        return keep(client, frame, fds);
    const ssize_t sent = send_some(client.fd, frame, fds);
    if (sent < 0 && errno != EAGAIN)
        return false;
    const size_t gone = size_t(std::max<ssize_t>(sent, 0));
    if (gone == frame.size())
        return true;
    return keep(client, frame.substr(gone), gone > 0 ? std::span<const int>{} : fds);
}

void ipc_reply(vnt_ipc_client &client, uint32_t type, std::string_view payload, std::span<const int> fds)
{
    if (client.dead) // its stream may be cut
        return;
    if (!send_or_keep(client, make_frame(type, payload), fds))
        ipc_client_dispose(client);
}

void ipc_send_event(vnt_ipc_client &client, uint32_t type)
{
    const std::string frame = make_frame(type, {});
    const bool told = client.rest.empty() ? send_some(client.fd, frame, {}) == ssize_t(frame.size())
                                          : keep(client, frame, {});
    if (!told)
        ipc_client_dispose(client);
}

bool ipc_keeps_up(const vnt_ipc_client &client)
{
    int unread = 0;
    return client.rest.empty() && ioctl(client.fd, SIOCOUTQ, &unread) == 0 && unread <= most_unread;
}

int ipc_push_fds(vnt_ipc_client &client, uint32_t type, std::string_view payload, std::span<const int> fds)
{
    if (!client.rest.empty())
        return 0;
    const std::string frame = make_frame(type, payload);
    const ssize_t sent = send_some(client.fd, frame, fds);
    if (sent < 0)
        return 0;
    return size_t(sent) == frame.size() ? 1 : -1;
}

// Returns false if the socket did not take the whole piece.
static bool send_piece(vnt_ipc_client &client, ipc_rest &piece)
{
    std::array<int, most_descriptors> fds{};
    for (size_t i = 0; i < piece.fds.size(); i++)
        fds[i] = piece.fds[i].fd;
    const ssize_t sent = send_some(client.fd, piece.bytes, std::span{fds}.first(piece.fds.size()));
    if (sent < 0) {
        if (errno != EAGAIN)
            ipc_client_dispose(client);
        return false;
    }
    piece.fds.clear();
    piece.bytes.erase(0, size_t(sent));
    client.rest_bytes -= size_t(sent);
    return piece.bytes.empty();
}

void ipc_send_rest(vnt_ipc_client &client)
{
    while (!client.rest.empty() && send_piece(client, client.rest.front()))
        client.rest.pop_front();
    watch_for_room(client);
}
