#include "connection.hpp"

#include "errors.hpp"

#include <array>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

// Larger than any real list of windows. A frame with a greater length does not come from our compositor.
static constexpr uint32_t largest_reply = 256U << 20;
static constexpr size_t most_descriptors = 4; // in one frame

owned_fd::~owned_fd()
{
    if (fd >= 0)
        close(fd);
}

owned_fd::owned_fd(owned_fd &&other) noexcept : fd(std::exchange(other.fd, -1)) {}

owned_fd &owned_fd::operator=(owned_fd &&other) noexcept
{
    std::swap(fd, other.fd);
    return *this;
}

std::expected<connection, std::string> connection::open(const char *path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string_view text{path};
    if (text.size() >= sizeof address.sun_path)
        return wrong("the socket's path is too long: " + std::string{text});
    text.copy(address.sun_path, text.size());
    owned_fd fd{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    if (!fd.is_open() || connect(fd.get(), reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
        return system_error("can't reach the compositor at " + std::string{text});
    return connection{std::move(fd)};
}

std::expected<void, std::string> connection::send(uint32_t type, std::string_view payload)
{
    std::string bytes{ipc_magic};
    const auto length = uint32_t(payload.size());
    bytes.append(reinterpret_cast<const char *>(&length), sizeof length);
    bytes.append(reinterpret_cast<const char *>(&type), sizeof type);
    bytes.append(payload);
    for (size_t sent = 0; sent < bytes.size();) {
        const ssize_t n = ::send(socket.get(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (n < 0 && errno != EINTR)
            return system_error("the compositor does not listen any more");
        sent += n > 0 ? size_t(n) : 0;
    }
    return {};
}

static void take_descriptors(msghdr &message, std::vector<owned_fd> &attached)
{
    for (cmsghdr *c = CMSG_FIRSTHDR(&message); c != nullptr; c = CMSG_NXTHDR(&message, c)) {
        if (c->cmsg_level != SOL_SOCKET || c->cmsg_type != SCM_RIGHTS)
            continue;
        for (size_t at = CMSG_LEN(0); at + sizeof(int) <= c->cmsg_len; at += sizeof(int)) {
            int fd = -1;
            memcpy(&fd, reinterpret_cast<const char *>(c) + at, sizeof fd);
            attached.emplace_back(fd);
        }
    }
}

std::expected<void, std::string> connection::read_exactly(char *into, size_t count,
                                                          std::vector<owned_fd> &attached)
{
    for (size_t read = 0; read < count;) {
        alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int) * most_descriptors)> control{};
        iovec piece{.iov_base = into + read, .iov_len = count - read};
        msghdr message{};
        message.msg_iov = &piece;
        message.msg_iovlen = 1;
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        const ssize_t n = recvmsg(socket.get(), &message, MSG_CMSG_CLOEXEC);
        if (n == 0)
            return wrong("the compositor has closed the connection");
        if (n < 0 && errno != EINTR)
            return system_error("no answer from the compositor");
        if (n > 0)
            take_descriptors(message, attached);
        read += n > 0 ? size_t(n) : 0;
    }
    return {};
}

std::expected<frame, std::string> connection::receive()
{
    frame f;
    std::array<char, ipc_header_size> header{};
    if (auto read = read_exactly(header.data(), header.size(), f.attached); !read)
        return std::unexpected{std::move(read.error())};
    uint32_t length = 0;
    memcpy(&length, header.data() + ipc_magic.size(), sizeof length);
    memcpy(&f.type, header.data() + ipc_magic.size() + sizeof length, sizeof f.type);
    if (std::string_view{header.data(), ipc_magic.size()} != ipc_magic || length > largest_reply)
        return wrong("the answer is no frame of the compositor's protocol");
    f.payload.resize(length);
    if (auto read = read_exactly(f.payload.data(), length, f.attached); !read)
        return std::unexpected{std::move(read.error())};
    return f;
}

std::expected<frame, std::string> connection::ask(uint32_t type, std::string_view payload)
{
    if (auto sent = send(type, payload); !sent)
        return std::unexpected{std::move(sent.error())};
    auto reply = receive();
    while (reply && (reply->type & ipc_event_bit) != 0)
        reply = receive();
    if (reply && reply->type != type)
        return wrong("the answer belongs to another question");
    return reply;
}
