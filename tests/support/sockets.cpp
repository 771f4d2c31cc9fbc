#include "sockets.hpp"

#include <sys/socket.h>
#include <unistd.h>

namespace test
{

sockaddr_un socket_address(const std::filesystem::path &path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.native().copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

using name_socket = decltype(connect);

static int named_socket(const std::filesystem::path &path, name_socket *name)
{
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_un address = socket_address(path);
    if (fd < 0 || name(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
        return fd;
    close(fd);
    return -1;
}

int connect_to(const std::filesystem::path &path)
{
    return named_socket(path, connect);
}

int bind_to(const std::filesystem::path &path)
{
    return named_socket(path, bind);
}

void fill_socket(int fd)
{
    const std::string block(4096, '\0');
    for (size_t n = block.size(); n > 0; n /= 2)
        while (::send(fd, block.data(), n, MSG_DONTWAIT | MSG_NOSIGNAL) > 0) {
        }
}

} // namespace test
