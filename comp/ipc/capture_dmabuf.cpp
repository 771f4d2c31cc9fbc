#include "capture_dmabuf.hpp"

#include "../graphics.hpp"
#include "../offscreen.hpp"
#include "../outputs/output.hpp"
#include "../server.hpp"
#include "../strbuf.hpp"
#include "../windows/toplevel.hpp"
#include "../workspaces/workspace.hpp"
#include "capture.hpp"
#include "capture_subscription.hpp"
#include "client.hpp"
#include "request_text.hpp"
#include "send.hpp"

#include <format>
#include <span>

void capture_dmabuf_reset(vantore_server &server)
{
    vantore_capturing &capturing = server.capturing;
    capturing.cap_held.reset();
    capturing.cap_sc.reset();
    capturing.cap_wid = 0;
    capturing.cap_w = capturing.cap_h = 0;
}

// Returns false if there is no swapchain of this size for the window.
static bool prepare_swapchain(vantore_server &server, uint32_t wid, picture_size size)
{
    vantore_capturing &capturing = server.capturing;
    const bool fits =
        capturing.cap_wid == wid && capturing.cap_w == size.width && capturing.cap_h == size.height;
    if (capturing.cap_sc != nullptr && fits)
        return true;
    capture_dmabuf_reset(server);
    capturing.cap_sc = offscreen_swapchain(server, size.width, size.height, pixel_order::linear_if_possible);
    if (capturing.cap_sc == nullptr)
        return false;
    capturing.cap_wid = wid;
    capturing.cap_w = size.width;
    capturing.cap_h = size.height;
    return true;
}

locked_buffer cap_render_toplevel(vantore_server &server, const vantore_toplevel &t,
                                  wlr_dmabuf_attributes &attributes)
{
    wlr_surface *surface = tl_surface(t);
    const picture_size size = surface != nullptr ? offscreen_surface_size(*surface) : picture_size{};
    if (size == picture_size{} || !prepare_swapchain(server, t.id, size))
        return nullptr;
    locked_buffer buffer = offscreen_draw_surface(server, *server.capturing.cap_sc, *surface);
    attributes = {};
    if (buffer == nullptr || !wlr_buffer_get_dmabuf(buffer.get(), &attributes))
        return nullptr;
    if (g_soft_render && !offscreen_await(server, *buffer))
        return nullptr;
    return buffer;
}

static void append_array(strbuf &sb, const char *key, std::span<const uint32_t> numbers)
{
    sb_appendf(sb, R"(,"%s":)", key);
    const char *before = "[";
    for (const uint32_t number : numbers) {
        sb_appendf(sb, "%s%u", before, number);
        before = ",";
    }
    sb_appendf(sb, "]");
}

void append_dmabuf(strbuf &sb, const wlr_dmabuf_attributes &attributes, std::string_view times)
{
    const auto planes = size_t(attributes.n_planes);
    sb_appendf(sb, R"({"ok":true,"w":%d,"h":%d,"format":%u,"modifier":%llu,"planes":%zu,)", attributes.width,
               attributes.height, attributes.format, static_cast<unsigned long long>(attributes.modifier),
               planes);
    sb_append(sb, times.data(), times.size());
    append_array(sb, "offset", {attributes.offset, planes});
    append_array(sb, "stride", {attributes.stride, planes});
    sb_appendf(sb, "}");
}

// Returns when the output that shows the window presented its last frame, or 0 if no output does.
static int64_t last_presentation(const vantore_toplevel &t)
{
    const bool shown = t.workspace != nullptr && t.workspace->output != nullptr;
    return shown ? t.workspace->output->last_present_ns : 0;
}

void ipc_capture_dmabuf_reply(vnt_ipc_client &client, uint32_t type, std::string_view payload)
{
    vantore_server &server = *client.server;
    const vantore_toplevel *t = toplevel_by_id(server, ipc_parse_capture_wish(payload).window_id);
    wlr_dmabuf_attributes attributes{};
    locked_buffer buffer = t != nullptr ? cap_render_toplevel(server, *t, attributes) : nullptr;
    if (buffer == nullptr) {
        ipc_reply(client, type, ipc_no_capture);
        return;
    }
    strbuf meta;
    append_dmabuf(meta, attributes, std::format(R"("present_ns":{})", last_presentation(*t)));
    ipc_reply(client, type, meta.text(), {attributes.fd, size_t(attributes.n_planes)});
    server.capturing.cap_held = std::move(buffer);
}

void capture_dmabuf_forget(vantore_server &server, uint32_t id)
{
    if (cap_sub_wid(server) == id)
        cap_sub_clear(server, true);
    if (server.capturing.cap_sc != nullptr && server.capturing.cap_wid == id)
        capture_dmabuf_reset(server);
}

static void window_ends(vantore_capturing &, vantore_toplevel *t)
{
    capture_dmabuf_forget(*t->server, t->id);
}

void capture_dmabuf_begin(vantore_server &server)
{
    listen<&vantore_capturing::window_ends, window_ends>(server.capturing, server.window_ends);
}

void capture_dmabuf_end(vantore_server &server)
{
    unlisten(server.capturing.window_ends);
    capture_dmabuf_reset(server);
}
