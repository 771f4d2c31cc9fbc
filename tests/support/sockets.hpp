// Sockets of the file system, and how full one is.
#pragma once

#include <filesystem>
#include <sys/un.h>

namespace test
{

sockaddr_un socket_address(const std::filesystem::path &path);

// Returns a descriptor, or -1 when nobody listens there.
int connect_to(const std::filesystem::path &path);

// Returns the descriptor of a new socket at the path, or -1. Nobody listens there yet.
int bind_to(const std::filesystem::path &path);

// Fills the sending side of a connection until nothing fits.
void fill_socket(int fd);

} // namespace test
