#include "xwl_events.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

// This bit is set in the type of an event that a client has sent (X11 protocol, chapter 1).
static constexpr uint8_t sent_by_a_client = 0x80;

static constexpr uint32_t most_states = 64; // read of one window

struct free_reply {
    void operator()(void *reply) const { free(reply); }
};
template <class T> using x11_reply = std::unique_ptr<T, free_reply>;

static struct {
    // Types of messages that only the X server sends, to say which surface belongs to which window.
    xcb_atom_t surface_id, surface_serial;
    xcb_atom_t state, fullscreen, modal;
    xcb_atom_t ping;
} g_atoms;

struct window_wish {
    xcb_window_t window;
    xwl_wish wish;
};
// The wishes of windows that are about to be mapped. The map request, with which each map begins, updates the
// window's entry.
static std::vector<window_wish> g_wishes;
static constexpr size_t most_wishes = 64; // beyond that, the oldest is forgotten; a window may never be drawn

static xcb_atom_t atom_named(xcb_connection_t *connection, std::string_view name)
{
    const x11_reply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, uint16_t(name.size()), name.data()), nullptr)};
    return reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

template <class Event> static const Event &as(const xcb_generic_event_t &event)
{
    return reinterpret_cast<const Event &>(event);
}

// Clients send messages as requests, an unmap event to withdraw a window, and a selection event to answer for
// a selection that they own (ICCCM, sections 4.1.4 and 2.2).
static bool clients_have_reason_to_send(const xcb_generic_event_t &event)
{
    switch (event.response_type & ~sent_by_a_client) {
    case XCB_CLIENT_MESSAGE: {
        const xcb_atom_t type = as<xcb_client_message_event_t>(event).type;
        return type != g_atoms.surface_id && type != g_atoms.surface_serial;
    }
    case XCB_UNMAP_NOTIFY:
    case XCB_SELECTION_NOTIFY:
        return true;
    default:
        return false;
    }
}

static xwl_wish read_wish(xcb_connection_t *connection, xcb_window_t window)
{
    const auto asked = xcb_get_property(connection, 0, window, g_atoms.state, XCB_ATOM_ATOM, 0, most_states);
    const x11_reply<xcb_get_property_reply_t> reply{xcb_get_property_reply(connection, asked, nullptr)};
    if (reply == nullptr || reply->format != 32)
        return {};
    const std::span states{static_cast<const xcb_atom_t *>(xcb_get_property_value(reply.get())),
                           reply->value_len};
    return {.fullscreen = std::ranges::contains(states, g_atoms.fullscreen),
            .modal = std::ranges::contains(states, g_atoms.modal)};
}

static void note_wish(xcb_window_t window, const xwl_wish &wish)
{
    std::erase_if(g_wishes, [&](const window_wish &w) { return w.window == window; });
    if (!wish.fullscreen && !wish.modal)
        return;
    if (g_wishes.size() == most_wishes)
        g_wishes.erase(g_wishes.begin());
    g_wishes.push_back({window, wish});
}

// Returns true to keep the event from the library.
static bool handle_first(wlr_xwayland *xwayland, xcb_generic_event_t *event)
{
    if ((event->response_type & sent_by_a_client) != 0)
        return !clients_have_reason_to_send(*event);
    if (event->response_type == XCB_MAP_REQUEST) {
        const xcb_window_t window = as<xcb_map_request_event_t>(*event).window;
        note_wish(window, read_wish(wlr_xwayland_get_xwm_connection(xwayland), window));
    }
    return false;
}

void xwl_watch_events(wlr_xwayland *xwayland)
{
    g_wishes.clear();
    xcb_connection_t *connection = wlr_xwayland_get_xwm_connection(xwayland);
    if (connection == nullptr)
        return;
    g_atoms = {.surface_id = atom_named(connection, "WL_SURFACE_ID"),
               .surface_serial = atom_named(connection, "WL_SURFACE_SERIAL"),
               .state = atom_named(connection, "_NET_WM_STATE"),
               .fullscreen = atom_named(connection, "_NET_WM_STATE_FULLSCREEN"),
               .modal = atom_named(connection, "_NET_WM_STATE_MODAL"),
               .ping = atom_named(connection, "_NET_WM_PING")};
    xwayland->user_event_handler = handle_first;
}

xwl_wish xwl_take_wish(xcb_window_t window)
{
    const auto found = std::ranges::find(g_wishes, window, &window_wish::window);
    if (found == g_wishes.end())
        return {};
    const xwl_wish wish = found->wish;
    g_wishes.erase(found);
    return wish;
}

bool xwl_supports_ping(const wlr_xwayland_surface &xwl)
{
    const std::span protocols{xwl.protocols, xwl.protocols_len};
    return std::ranges::contains(protocols, g_atoms.ping);
}
