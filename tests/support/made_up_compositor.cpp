#include "made_up_compositor.hpp"

#include "ipc/protocol.hpp"
#include "sockets.hpp"

#include <array>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace test
{

static constexpr int patience_ms = 10000;

std::string ipc_frame_of(uint32_t type, std::string_view payload)
{
    const std::array<uint32_t, 2> fields{uint32_t(payload.size()), type};
    std::string bytes{ipc_magic};
    bytes.append(reinterpret_cast<const char *>(fields.data()), sizeof fields);
    return bytes.append(payload);
}

made_up_compositor::made_up_compositor(const std::filesystem::path &path) : listener(bind_to(path))
{
    if (listener < 0 || listen(listener, 8) != 0)
        abort();
}

made_up_compositor::~made_up_compositor()
{
    hang_up();
    close(listener);
}

static bool readable(int fd)
{
    pollfd wait{.fd = fd, .events = POLLIN, .revents = 0};
    return poll(&wait, 1, patience_ms) == 1;
}

std::string made_up_compositor::read_bytes(size_t count) const
{
    std::string bytes(count, '\0');
    size_t have = 0;
    while (have < count && readable(connection)) {
        const ssize_t n = read(connection, bytes.data() + have, count - have);
        if (n <= 0)
            break;
        have += size_t(n);
    }
    EXPECT_EQ(have, count) << "bytes of a request";
    return bytes;
}

ipc_request made_up_compositor::hear()
{
    hang_up();
    if (readable(listener))
        connection = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    const std::string header = read_bytes(ipc_header_size);
    EXPECT_TRUE(header.starts_with(ipc_magic)) << header;
    std::array<uint32_t, 2> fields{};
    memcpy(fields.data(), header.data() + ipc_magic.size(), sizeof fields);
    return {.type = fields[1], .payload = read_bytes(fields[0])};
}

void made_up_compositor::say(std::string_view bytes, int fd) const
{
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof fd)> control{};
    iovec part{.iov_base = const_cast<char *>(bytes.data()), .iov_len = bytes.size()};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    if (fd >= 0) {
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        cmsghdr *c = CMSG_FIRSTHDR(&message);
        c->cmsg_level = SOL_SOCKET;
        c->cmsg_type = SCM_RIGHTS;
        c->cmsg_len = CMSG_LEN(sizeof fd);
        memcpy(CMSG_DATA(c), &fd, sizeof fd);
    }
    EXPECT_EQ(sendmsg(connection, &message, MSG_NOSIGNAL), ssize_t(bytes.size()));
}

void made_up_compositor::hang_up()
{
    if (connection >= 0)
        close(connection);
    connection = -1;
}

} // namespace test
