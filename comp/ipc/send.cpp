#include "send.hpp"

#include "frame.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <unistd.h>

static constexpr size_t most_descriptors = 4;

bool ipc_write_all(int fd, const char *data, size_t length)
{
    while (length > 0) {
        const ssize_t written = write(fd, data, length);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        data += written;
        length -= size_t(written);
    }
    return true;
}

void ipc_send_reply(int fd, uint32_t type, std::string_view payload)
{
    const ipc_header header = ipc_make_header(type, uint32_t(payload.size()));
    if (ipc_write_all(fd, header.data(), header.size()))
        ipc_write_all(fd, payload.data(), payload.size());
}

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

// What sendmsg returns, -1 on an error.
static ssize_t send_frame(int fd, uint32_t type, std::string_view payload, std::span<const int> fds,
                          int flags)
{
    ipc_header header = ipc_make_header(type, uint32_t(payload.size()));
    std::array<iovec, 2> pieces{{
        {.iov_base = header.data(), .iov_len = header.size()},
        {.iov_base = const_cast<char *>(payload.data()), .iov_len = payload.size()},
    }};
    msghdr message{};
    message.msg_iov = pieces.data();
    message.msg_iovlen = payload.empty() ? 1 : 2;
    alignas(cmsghdr) control_space control{};
    attach_descriptors(message, control, fds);
    ssize_t sent = 0;
    do {
        sent = sendmsg(fd, &message, flags);
    } while (sent < 0 && errno == EINTR);
    return sent;
}

void ipc_send_reply_fd(int fd, uint32_t type, std::string_view payload, int out_fd)
{
    ipc_send_reply_fds(fd, type, payload, {&out_fd, out_fd == -1 ? size_t{0} : size_t{1}});
}

void ipc_send_reply_fds(int fd, uint32_t type, std::string_view payload, std::span<const int> fds)
{
    send_frame(fd, type, payload, fds, MSG_NOSIGNAL);
}

int ipc_push_fds(int fd, uint32_t type, std::string_view payload, std::span<const int> fds)
{
    const ssize_t sent = send_frame(fd, type, payload, fds, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (sent < 0)
        return 0;
    return size_t(sent) == ipc_header_size + payload.size() ? 1 : -1;
}
