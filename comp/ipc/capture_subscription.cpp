#include "capture_subscription.hpp"

#include "../platform.hpp"
#include "../server.hpp"
#include "../strbuf.hpp"
#include "../windows/toplevel.hpp"
#include "capture.hpp"
#include "capture_dmabuf.hpp"
#include "client.hpp"
#include "protocol.hpp"
#include "request_text.hpp"
#include "send.hpp"

#include <format>

// Three quarters of a frame's time, so that a commit which comes a little early is not skipped.
static constexpr int64_t least_gap_ns = 750'000'000; // at one frame a second

uint32_t cap_sub_wid(const vantore_server &server)
{
    return server.capturing.cap_sub.wid;
}

// The notice waits for room in the socket, unlike a picture: without it, the owner would wait forever.
void cap_sub_clear(vantore_server &server, bool notify_gone)
{
    vantore_capture_subscription &sub = server.capturing.cap_sub;
    if (sub.client == nullptr)
        return;
    if (notify_gone)
        ipc_reply(*sub.client, VNT_MSG_CAPTURE_FRAME, R"({"gone":true})");
    if (sub.pending != nullptr)
        wl_event_source_remove(sub.pending);
    sub = {};
}

void cap_sub_forget(const vnt_ipc_client &client)
{
    if (client.server->capturing.cap_sub.client == &client)
        cap_sub_clear(*client.server, false);
}

// The two newest buffers stay locked, because the client may still read them.
static void pushed(vantore_capture_subscription &sub, locked_buffer buffer, int64_t now_ns)
{
    sub.last_push_ns = now_ns;
    sub.held[0] = std::move(sub.held[1]);
    sub.held[1] = std::move(buffer);
}

// Draws the window and sends the picture. The number counts attempts, so the client sees what it missed.
static void draw_and_send(vantore_server &server, const vantore_toplevel &t)
{
    vantore_capture_subscription &sub = server.capturing.cap_sub;
    wlr_dmabuf_attributes attributes{};
    locked_buffer buffer = cap_render_toplevel(server, t, attributes);
    if (buffer == nullptr)
        return;
    const int64_t now_ns = g_platform.monotonic_ns();
    strbuf meta;
    append_dmabuf(meta, attributes, std::format(R"("t_ns":{},"seq":{})", now_ns, sub.seq++));
    const int sent = ipc_push_fds(*sub.client, VNT_MSG_CAPTURE_FRAME, meta.text(),
                                  {attributes.fd, size_t(attributes.n_planes)});
    if (sent > 0)
        pushed(sub, std::move(buffer), now_ns);
    else if (sent < 0)
        cap_sub_clear(server, false); // the client can't make sense of its stream any more
}

// Draws nothing for a client that is too slow to look at it.
static void cap_sub_push(vantore_server &server)
{
    vantore_capture_subscription &sub = server.capturing.cap_sub;
    const vantore_toplevel *t = toplevel_by_id(server, sub.wid);
    if (sub.client->dead)
        cap_sub_clear(server, false);
    else if (t != nullptr && !ipc_keeps_up(*sub.client))
        sub.seq++;
    else if (t != nullptr)
        draw_and_send(server, *t);
}

static void push_when_idle(void *data)
{
    auto &server = *static_cast<vantore_server *>(data);
    server.capturing.cap_sub.pending = nullptr; // the loop frees an idle source that has run
    cap_sub_push(server);
}

// A surface tells of its picture before all its subsurfaces have taken over theirs, so the push waits for
// them.
static void cap_sub_commit(void *data)
{
    auto &server = *static_cast<vantore_server *>(data);
    vantore_capture_subscription &sub = server.capturing.cap_sub;
    if (sub.pending != nullptr || g_platform.monotonic_ns() - sub.last_push_ns < sub.min_gap_ns)
        return;
    sub.pending = wl_event_loop_add_idle(wl_display_get_event_loop(server.display), push_when_idle, &server);
}

static void cap_sub_surf_destroy(void *data)
{
    cap_sub_clear(*static_cast<vantore_server *>(data), true);
}

static constexpr surface_watch_events watch_events{.new_picture = cap_sub_commit,
                                                   .gone = cap_sub_surf_destroy};

void ipc_capture_subscribe(vnt_ipc_client &client, uint32_t type, std::string_view payload)
{
    vantore_server &server = *client.server;
    const capture_wish wish = ipc_parse_capture_wish(payload);
    const vantore_toplevel *t = toplevel_by_id(server, wish.window_id);
    wlr_surface *surface = t != nullptr ? tl_surface(*t) : nullptr;
    if (surface == nullptr) {
        ipc_reply(client, type, ipc_no_capture);
        return;
    }
    cap_sub_clear(server, false);
    vantore_capture_subscription &sub = server.capturing.cap_sub;
    sub.client = &client;
    sub.wid = wish.window_id;
    sub.min_gap_ns = least_gap_ns / wish.fps;
    sub.watch = surface_watch_create(*surface, watch_events, &server);
    ipc_reply(client, type, R"({"ok":true})");
    cap_sub_push(server);
}
