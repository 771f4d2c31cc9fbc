#include "ipc_client.hpp"

#include "sockets.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace test
{

std::string ipc_bytes(uint32_t type, std::string_view payload)
{
    const auto length = uint32_t(payload.size());
    std::string bytes{ipc_magic};
    bytes.append(reinterpret_cast<const char *>(&length), sizeof length);
    bytes.append(reinterpret_cast<const char *>(&type), sizeof type);
    return bytes.append(payload);
}

ipc_client::ipc_client(std::string socket_path)
    : path(std::move(socket_path)), fd(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
{
}

ipc_client::~ipc_client()
{
    vanish();
    for (const int descriptor : descriptors)
        close(descriptor);
}

void ipc_client::vanish()
{
    if (fd >= 0)
        close(std::exchange(fd, -1));
    connected = false;
    ended = true;
}

// The compositor's queue of new connections is short. If it is full, the next pump tries again.
void ipc_client::connect()
{
    const sockaddr_un address = socket_address(path);
    connected = ::connect(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    if (!connected && errno != EAGAIN)
        vanish();
}

void ipc_client::send_some()
{
    const ssize_t n = ::send(fd, to_send.data(), to_send.size(), MSG_NOSIGNAL);
    if (n > 0)
        to_send.erase(0, size_t(n));
    else if (n < 0 && errno != EAGAIN)
        to_send.clear();
}

void ipc_client::read_some()
{
    std::array<char, 16384> bytes;
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int) * 8)> control;
    iovec piece{.iov_base = bytes.data(), .iov_len = bytes.size()};
    msghdr message{};
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    const ssize_t n = recvmsg(fd, &message, MSG_CMSG_CLOEXEC);
    if (n == 0 || (n < 0 && errno != EAGAIN))
        vanish();
    if (n <= 0)
        return;
    unparsed.append(bytes.data(), size_t(n));
    for (cmsghdr *c = CMSG_FIRSTHDR(&message); c != nullptr; c = CMSG_NXTHDR(&message, c)) {
        std::vector<int> came((c->cmsg_len - CMSG_LEN(0)) / sizeof(int));
        memcpy(came.data(), CMSG_DATA(c), came.size() * sizeof(int));
        descriptors.insert(descriptors.end(), came.begin(), came.end());
    }
}

void ipc_client::parse()
{
    if (skip_nulls)
        unparsed.erase(0, std::min(unparsed.find_first_not_of('\0'), unparsed.size()));
    size_t at = 0;
    while (unparsed.size() - at >= ipc_header_size) {
        uint32_t length = 0, type = 0;
        memcpy(&length, unparsed.data() + at + 6, sizeof length);
        memcpy(&type, unparsed.data() + at + 10, sizeof type);
        if (unparsed.size() - at - ipc_header_size < length)
            break;
        arrived.push_back({.type = type, .payload = unparsed.substr(at + ipc_header_size, length)});
        at += ipc_header_size + length;
    }
    unparsed.erase(0, at);
}

void ipc_client::pump()
{
    if (fd >= 0 && !connected)
        connect();
    if (fd >= 0 && connected && !to_send.empty())
        send_some();
    if (fd >= 0 && connected && reads)
        read_some();
    parse();
}

void ipc_client::send_bytes(std::string_view bytes)
{
    to_send += bytes;
}

void ipc_client::send(uint32_t type, std::string_view payload)
{
    send_bytes(ipc_bytes(type, payload));
}

std::vector<vnt_event> ipc_client::events() const
{
    std::vector<vnt_event> codes;
    for (const ipc_message &m : arrived)
        if ((m.type & ipc_event_bit) != 0)
            codes.push_back(vnt_event(m.type & ~ipc_event_bit));
    return codes;
}

std::vector<ipc_message> ipc_client::take()
{
    return std::exchange(arrived, {});
}

int ipc_client::take_descriptor()
{
    if (descriptors.empty())
        return -1;
    const int first = descriptors.front();
    descriptors.erase(descriptors.begin());
    return first;
}

} // namespace test
