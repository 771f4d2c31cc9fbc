#include "listening.hpp"

#include "descriptor.hpp"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

static constexpr int rest_ms = 250;

// Each shortage of descriptors is logged once, not at each attempt.
static bool g_said_full;

// Whether the next attempt may succeed at once. A shortage of descriptors or memory lasts longer, and the
// socket stays readable meanwhile.
static bool is_passing(int error)
{
    return error == EAGAIN || error == EINTR || error == ECONNABORTED;
}

static void rest_a_while(listening_socket &l)
{
    if (!g_said_full)
        wlr_log(WLR_ERROR, "vantore-comp: no descriptor is free; new connections wait until others end");
    g_said_full = true;
    wl_event_source_fd_update(l.source.get(), 0);
    timer_arm(l.rest, rest_ms);
}

// The event loop needs a second descriptor for each connection. A connection that is accepted with the last
// one would have to be closed at once instead of waiting.
static int accept_with_one_to_spare(int fd)
{
    const descriptor spare{fcntl(fd, F_DUPFD_CLOEXEC, 0)};
    return spare.fd >= 0 ? accept4(fd, nullptr, nullptr, SOCK_CLOEXEC) : -1;
}

// Whoever else holds the socket may shut it down. It then stays readable for ever.
static bool is_shut_down(int fd)
{
    pollfd state{.fd = fd, .events = POLLRDHUP, .revents = 0};
    return poll(&state, 1, 0) == 1;
}

static int accept_connection(int fd, uint32_t, void *data)
{
    auto &l = *static_cast<listening_socket *>(data);
    const int connection = accept_with_one_to_spare(fd), error = errno;
    if (connection >= 0) {
        g_said_full = false;
        l.take(l.data, connection);
    } else if (is_shut_down(fd)) {
        l.source.reset();
    } else if (!is_passing(error)) {
        rest_a_while(l);
    }
    return 0;
}

static int listen_again(void *data)
{
    if (const auto &source = static_cast<listening_socket *>(data)->source; source != nullptr)
        wl_event_source_fd_update(source.get(), WL_EVENT_READABLE);
    return 0;
}

bool listening_start(listening_socket &l, wl_display *display, int fd,
                     void (*take)(void *data, int connection), void *data)
{
    wl_event_loop *loop = wl_display_get_event_loop(display);
    l.source.reset(wl_event_loop_add_fd(loop, fd, WL_EVENT_READABLE, accept_connection, &l));
    l.rest = timer_create(display, listen_again, &l);
    if (l.source == nullptr || l.rest == nullptr) {
        l.source.reset();
        l.rest.reset();
        return false;
    }
    g_said_full = false; // in an earlier session
    l.fd = fd;
    l.take = take;
    l.data = data;
    return true;
}

void listening_stop(listening_socket &l)
{
    l.source.reset();
    l.rest.reset();
    if (l.fd >= 0)
        close(l.fd);
    l.fd = -1;
}
