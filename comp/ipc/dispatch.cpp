#include "dispatch.hpp"

#include "../strbuf.hpp"
#include "capture.hpp"
#include "capture_dmabuf.hpp"
#include "capture_subscription.hpp"
#include "client.hpp"
#include "command.hpp"
#include "protocol.hpp"
#include "queries.hpp"
#include "send.hpp"

#include <iterator>
#include <unistd.h>

static constexpr std::string_view success = R"({"success":true})";
static constexpr std::string_view unknown_type = R"({"success":false,"error":"unknown message type"})";

static void run_command(vnt_ipc_client &client, uint32_t type, std::string_view payload)
{
    ipc_run_command(*client.server, payload);
    ipc_reply(client, type, success);
}

template <void (*Query)(vantore_server &, strbuf &)>
static void answer_query(vnt_ipc_client &client, uint32_t type, std::string_view)
{
    strbuf text;
    Query(*client.server, text);
    ipc_reply(client, type, text.text());
}

static void subscribe(vnt_ipc_client &client, uint32_t type, std::string_view)
{
    client.subscribed = true;
    ipc_reply(client, type, success);
}

// `Capture` returns -1 if there is nothing to show.
template <int (*Capture)(vantore_server &, std::string_view, strbuf &)>
static void answer_capture(vnt_ipc_client &client, uint32_t type, std::string_view payload)
{
    strbuf meta;
    const int file = Capture(*client.server, payload, meta);
    if (file < 0) {
        ipc_reply(client, type, ipc_no_capture);
        return;
    }
    ipc_reply(client, type, meta.text(), {&file, 1});
    close(file);
}

using request_handler = void (*)(vnt_ipc_client &client, uint32_t type, std::string_view payload);

static constexpr request_handler handlers[]{
    run_command, // VNT_MSG_COMMAND
    answer_query<ipc_json_workspaces>, // VNT_MSG_GET_WORKSPACES
    answer_query<ipc_json_windows>, // VNT_MSG_GET_WINDOWS
    answer_query<ipc_json_outputs>, // VNT_MSG_GET_OUTPUTS
    subscribe, // VNT_MSG_SUBSCRIBE
    answer_capture<ipc_thumbnail>, // VNT_MSG_GET_THUMBNAIL
    answer_capture<ipc_capture>, // VNT_MSG_CAPTURE
    ipc_capture_dmabuf_reply, // VNT_MSG_CAPTURE_DMABUF
    ipc_capture_subscribe, // VNT_MSG_CAPTURE_SUBSCRIBE
};
static_assert(std::size(handlers) == VNT_MSG_CAPTURE_SUBSCRIBE + 1);

void ipc_dispatch(vnt_ipc_client &client, uint32_t type, std::string_view payload)
{
    if (type < std::size(handlers))
        handlers[type](client, type, payload);
    else
        ipc_reply(client, type, unknown_type);
}
