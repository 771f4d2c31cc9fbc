// The IPC socket and its connections.
//
// A request runs within the callback that read it, and its reply is sent or queued before the callback
// returns. Nothing in there frees a client, because the client's own event source may be running, or a walk
// over all clients may be about to visit it. The client is condemned instead, and an idle source frees it.

#include "transport.hpp"

#include "../broadcast.hpp"
#include "../server.hpp"
#include "../text.hpp"
#include "capture_dmabuf.hpp"
#include "capture_subscription.hpp"
#include "client.hpp"
#include "dispatch.hpp"
#include "frame.hpp"
#include "send.hpp"
#include "subscribers.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

static constexpr int backlog = 8;
static constexpr size_t read_size = 4096;
static constexpr size_t first_capacity = 4096;

static void ipc_client_destroy(vnt_ipc_client &client)
{
    if (client.reap != nullptr)
        wl_event_source_remove(client.reap);
    cap_sub_forget(client);
    client.src.reset();
    shutdown(client.fd, SHUT_RDWR); // programs that were started meanwhile hold the connection too
    close(client.fd);
    delete &client;
}

static void ipc_client_reap_idle(void *data)
{
    auto &client = *static_cast<vnt_ipc_client *>(data);
    client.reap = nullptr; // the loop frees an idle source that has run
    ipc_client_destroy(client);
}

void ipc_client_dispose(vnt_ipc_client &client)
{
    if (client.dead)
        return;
    client.dead = true;
    wl_event_loop *loop = wl_display_get_event_loop(client.server->display);
    client.reap = wl_event_loop_add_idle(loop, ipc_client_reap_idle, &client);
}

// Makes room for n more bytes and one to spare. Returns false if there is no memory.
static bool reserve(vnt_ipc_client &client, size_t n)
{
    size_t cap = client.cap > 0 ? client.cap : first_capacity;
    while (cap < client.len + n + 1)
        cap *= 2;
    if (cap == client.cap)
        return true;
    char *buf = client.buf.release();
    auto *grown = static_cast<char *>(realloc(buf, cap));
    client.buf.reset(grown != nullptr ? grown : buf);
    client.cap = grown != nullptr ? cap : client.cap;
    return grown != nullptr;
}

// Returns false if the connection has ended or is not worth keeping.
static bool read_more(vnt_ipc_client &client)
{
    std::array<char, read_size> bytes;
    const ssize_t n = read(client.fd, bytes.data(), bytes.size());
    if (n < 0)
        return errno == EAGAIN || errno == EINTR;
    if (n == 0 || !reserve(client, size_t(n)))
        return false;
    memcpy(client.buf.get() + client.len, bytes.data(), size_t(n));
    client.len += size_t(n);
    return true;
}

// Runs all requests that have arrived completely. Returns false if the bytes after them can't begin a frame.
static bool run_requests(vnt_ipc_client &client)
{
    std::string_view rest{client.buf.get(), client.len};
    ipc_frame frame;
    ipc_frame_state state{};
    while ((state = ipc_first_frame(rest, frame)) == ipc_frame_state::complete) {
        ipc_dispatch(client, frame.type, frame.payload);
        if (client.dead)
            return true;
        rest.remove_prefix(ipc_header_size + frame.payload.size());
    }
    if (rest.size() < client.len)
        memmove(client.buf.get(), rest.data(), rest.size());
    client.len = rest.size();
    return state == ipc_frame_state::incomplete;
}

static int ipc_client_ready(int, uint32_t mask, void *data)
{
    auto &client = *static_cast<vnt_ipc_client *>(data);
    if (!client.dead && (mask & WL_EVENT_WRITABLE) != 0)
        ipc_send_rest(client);
    if ((mask & ~uint32_t{WL_EVENT_WRITABLE}) == 0)
        return 0;
    if (!client.dead && (!read_more(client) || !run_requests(client)))
        ipc_client_dispose(client);
    return 0;
}

static void ipc_accept(void *data, int fd)
{
    auto &server = *static_cast<vantore_server *>(data);
    fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK);
    auto *client = new vnt_ipc_client{};
    client->server = &server;
    client->fd = fd;
    wl_list_insert(&server.ipc.ipc_clients, &client->link);
    wl_event_loop *loop = wl_display_get_event_loop(server.display);
    client->src.reset(wl_event_loop_add_fd(loop, fd, WL_EVENT_READABLE, ipc_client_ready, client));
    if (client->src == nullptr)
        ipc_client_destroy(*client);
}

std::array<char, 108> ipc_socket_path(pid_t pid)
{
    const char *directory = getenv("XDG_RUNTIME_DIR");
    if (directory == nullptr || *directory == '\0')
        directory = "/tmp";
    std::array<char, 108> path{};
    snprintf(path.data(), path.size(), "%s/vantore-ipc-%d.sock", directory, pid);
    return path;
}

static bool bind_to(int fd, std::span<const char> path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    copy_text(address.sun_path, text_of(path));
    unlink(path.data()); // left by an earlier process with this id
    return bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
}

// Logs a failure and returns -1.
static int open_socket(vantore_server &server)
{
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        wlr_log(WLR_ERROR, "vantore-comp: IPC socket() failed: %s", strerror(errno));
        return -1;
    }
    const auto path = ipc_socket_path(getpid());
    if (!bind_to(fd, path)) {
        wlr_log(WLR_ERROR, "vantore-comp: IPC bind('%s') failed: %s", path.data(), strerror(errno));
        close(fd);
        return -1;
    }
    server.ipc.ipc_path = path; // ipc_finish unlinks it from now on
    if (listen(fd, backlog) < 0) {
        wlr_log(WLR_ERROR, "vantore-comp: IPC listen failed: %s", strerror(errno));
        close(fd);
        return -1;
    }
    return fd;
}

void ipc_init(vantore_server &server)
{
    unsetenv("VANTORESOCK");
    const int fd = open_socket(server);
    if (fd < 0 || !listening_start(server.ipc.ipc_listen, server.display, fd, ipc_accept, &server)) {
        if (fd >= 0)
            close(fd);
        ipc_finish(server);
        return;
    }
    broadcast_listen(ipc_tell_subscribers);
    capture_dmabuf_begin(server);
    setenv("VANTORESOCK", server.ipc.ipc_path.data(), 1);
    wlr_log(WLR_INFO, "vantore-comp: IPC listening on %s", server.ipc.ipc_path.data());
}

void ipc_finish(vantore_server &server)
{
    broadcast_unlisten(ipc_tell_subscribers);
    for (auto &client : each<&vnt_ipc_client::link>(server.ipc.ipc_clients))
        ipc_client_destroy(client);
    capture_dmabuf_end(server);
    listening_stop(server.ipc.ipc_listen);
    if (server.ipc.ipc_path[0] != '\0')
        unlink(server.ipc.ipc_path.data());
    server.ipc.ipc_path[0] = '\0';
}
