// libwayland can open such a socket itself, but then we could not let it rest while no descriptor is free.
// The names and the lock files are those of libwayland, so that we and other compositors respect each
// other's.

#include "wayland_socket.hpp"

#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

static constexpr int first_number = 0, last_number = 32;
static constexpr int backlog = 128;

static void take_client(void *data, int connection)
{
    if (wl_client_create(static_cast<wl_display *>(data), connection) == nullptr)
        close(connection);
}

// Returns the descriptor that holds the lock, or -1 if another compositor holds it.
static int lock_name(const std::string &path)
{
    const int lock = open((path + ".lock").c_str(), O_CREAT | O_CLOEXEC | O_RDWR, 0660);
    if (lock >= 0 && flock(lock, LOCK_EX | LOCK_NB) == 0)
        return lock;
    if (lock >= 0)
        close(lock);
    return -1;
}

// The caller holds the lock, so a socket that is still there was left by a compositor that died.
static int bind_socket(const std::string &path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        return -1;
    path.copy(address.sun_path, path.size());
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    unlink(path.c_str());
    if (fd >= 0 && bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0 &&
        listen(fd, backlog) == 0)
        return fd;
    if (fd >= 0)
        close(fd);
    return -1;
}

static void unlock(wayland_socket &s)
{
    unlink((s.path + ".lock").c_str());
    close(s.lock);
    s = {};
}

static bool open_name(wayland_socket &s, wl_display *display, const std::string &directory, int number)
{
    s.name = "wayland-" + std::to_string(number);
    s.path = directory + '/' + s.name;
    s.lock = lock_name(s.path);
    if (s.lock < 0)
        return false;
    const int fd = bind_socket(s.path);
    if (fd >= 0 && listening_start(s.listening, display, fd, take_client, display))
        return true;
    if (fd >= 0)
        close(fd);
    unlock(s);
    return false;
}

bool wayland_socket_open(wayland_socket &s, wl_display *display)
{
    const char *directory = getenv("XDG_RUNTIME_DIR");
    if (directory == nullptr || *directory != '/')
        return false;
    for (int number = first_number; number <= last_number; number++)
        if (open_name(s, display, directory, number))
            return true;
    s = {};
    return false;
}

void wayland_socket_close(wayland_socket &s)
{
    if (s.lock < 0)
        return;
    listening_stop(s.listening);
    unlink(s.path.c_str());
    unlock(s);
}
