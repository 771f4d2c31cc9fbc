#include "xwl_guard.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <string_view>

// Set in the type of an event that a client has sent (X11 protocol, chapter 1).
static constexpr uint8_t sent_by_a_client = 0x80;

// Of messages that only the X server itself sends: which surface belongs to which window.
static std::array<xcb_atom_t, 2> g_surface_messages;

static xcb_atom_t atom_named(xcb_connection_t *connection, std::string_view name)
{
    struct free_reply {
        void operator()(xcb_intern_atom_reply_t *reply) const { free(reply); }
    };
    const std::unique_ptr<xcb_intern_atom_reply_t, free_reply> reply{xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, uint16_t(name.size()), name.data()), nullptr)};
    return reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

// Messages are requests, windows are withdrawn by an event of their own, and who owns a selection answers
// with one (ICCCM, sections 4.1.4 and 2.2).
static bool clients_have_reason_to_send(const xcb_generic_event_t &event)
{
    switch (event.response_type & ~sent_by_a_client) {
    case XCB_CLIENT_MESSAGE: {
        const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(event);
        return !std::ranges::contains(g_surface_messages, message.type);
    }
    case XCB_UNMAP_NOTIFY:
    case XCB_SELECTION_NOTIFY:
        return true;
    default:
        return false;
    }
}

// True keeps the event from the library.
static bool is_forged(wlr_xwayland *, xcb_generic_event_t *event)
{
    return (event->response_type & sent_by_a_client) != 0 && !clients_have_reason_to_send(*event);
}

void ignore_forged_events(wlr_xwayland *xwayland)
{
    xcb_connection_t *connection = wlr_xwayland_get_xwm_connection(xwayland);
    if (connection == nullptr)
        return;
    g_surface_messages = {atom_named(connection, "WL_SURFACE_ID"),
                          atom_named(connection, "WL_SURFACE_SERIAL")};
    xwayland->user_event_handler = is_forged;
}
