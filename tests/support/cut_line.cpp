#include "cut_line.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace test
{

static constexpr size_t header_size = 8; // the object, then size and opcode
static constexpr size_t most_descriptors = 28; // the Wayland libraries send no more with one message

static std::array<int, 2> connected_pair()
{
    std::array<int, 2> pair;
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, pair.data()) != 0)
        abort();
    return pair;
}

struct parcel {
    std::vector<char> bytes;
    std::vector<int> descriptors; // the receiver closes them
    bool hung_up = false;
};

static parcel receive(int fd)
{
    parcel p{.bytes = std::vector<char>(4096), .descriptors = {}};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(most_descriptors * sizeof(int))> control;
    iovec piece{.iov_base = p.bytes.data(), .iov_len = p.bytes.size()};
    msghdr message{};
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    const ssize_t n = recvmsg(fd, &message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
    p.hung_up = n == 0;
    p.bytes.resize(n > 0 ? size_t(n) : 0);
    if (n <= 0)
        return p;
    for (cmsghdr *c = CMSG_FIRSTHDR(&message); c != nullptr; c = CMSG_NXTHDR(&message, c)) {
        const size_t count = (c->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        p.descriptors.resize(count);
        memcpy(p.descriptors.data(), CMSG_DATA(c), count * sizeof(int));
    }
    return p;
}

static void send(int fd, const char *bytes, size_t length, std::vector<int> &descriptors)
{
    alignas(cmsghdr) std::array<char, CMSG_SPACE(most_descriptors * sizeof(int))> control{};
    iovec piece{.iov_base = const_cast<char *>(bytes), .iov_len = length};
    msghdr message{};
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    if (!descriptors.empty()) {
        message.msg_control = control.data();
        message.msg_controllen = CMSG_SPACE(descriptors.size() * sizeof(int));
        cmsghdr *c = CMSG_FIRSTHDR(&message);
        c->cmsg_level = SOL_SOCKET;
        c->cmsg_type = SCM_RIGHTS;
        c->cmsg_len = CMSG_LEN(descriptors.size() * sizeof(int));
        memcpy(CMSG_DATA(c), descriptors.data(), descriptors.size() * sizeof(int));
    }
    const ssize_t sent = sendmsg(fd, &message, MSG_NOSIGNAL);
    const bool peer_has_gone = sent < 0 && (errno == EPIPE || errno == ECONNRESET);
    if (sent != ssize_t(length) && !peer_has_gone)
        abort(); // no test fills a socket
    for (const int descriptor : descriptors)
        close(descriptor);
    descriptors.clear();
}

cut_line::cut_line(int requests) : left(requests)
{
    const auto client_pair = connected_pair();
    const auto server_pair = connected_pair();
    ends = {client_pair[0], server_pair[0]};
    to_client = client_pair[1];
    to_server = server_pair[1];
}

cut_line::~cut_line()
{
    cut();
}

void cut_line::cut()
{
    if (to_server < 0)
        return;
    left = 0;
    for (const int descriptor : std::exchange(descriptors, {}))
        close(descriptor);
    close(to_client);
    close(to_server);
    to_client = to_server = -1;
}

void cut_line::carry_requests()
{
    parcel p = receive(to_client);
    if (p.bytes.size() > waiting.size() - filled)
        abort();
    memcpy(waiting.data() + filled, p.bytes.data(), p.bytes.size());
    std::ranges::copy(p.descriptors, std::back_inserter(descriptors));
    filled += p.bytes.size();
    size_t whole = 0;
    while (left > 0 && filled - whole >= header_size) {
        uint32_t size_and_opcode = 0;
        memcpy(&size_and_opcode, waiting.data() + whole + 4, sizeof size_and_opcode);
        const size_t size = size_and_opcode >> 16;
        if (filled - whole < size)
            break;
        whole += size;
        left--;
        requests_carried++;
    }
    if (whole > 0)
        send(to_server, waiting.data(), whole, descriptors);
    filled -= whole;
    memmove(waiting.data(), waiting.data() + whole, filled);
    if (left == 0 || p.hung_up)
        cut();
}

void cut_line::carry_events()
{
    parcel p = receive(to_server);
    if (!p.bytes.empty())
        send(to_client, p.bytes.data(), p.bytes.size(), p.descriptors);
    if (p.hung_up)
        cut();
}

void cut_line::pump()
{
    if (to_server >= 0)
        carry_events();
    if (to_server >= 0)
        carry_requests();
}

} // namespace test
