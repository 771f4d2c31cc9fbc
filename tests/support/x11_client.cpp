#include "x11_client.hpp"

#include "files.hpp"
#include "sockets.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <format>
#include <memory>
#include <sys/socket.h>
#include <xcb/xcbext.h>

namespace test
{

namespace
{

struct freed {
    void operator()(void *reply) const { free(reply); }
};
template <class T> using reply = std::unique_ptr<T, freed>;

constexpr uint32_t window_events = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_FOCUS_CHANGE |
                                   XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS |
                                   XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_ENTER_WINDOW |
                                   XCB_EVENT_MASK_LEAVE_WINDOW;

constexpr uint32_t urgency_hint = 0x100;
constexpr uint32_t min_and_max_size = 0x10 | 0x20; // of WM_NORMAL_HINTS
constexpr uint32_t motif_decorations = 2;

const std::string state_prefix = "_NET_WM_STATE_";

} // namespace

pid_t x_server_of(const std::string &display)
{
    const std::string arguments = std::string{"Xwayland"} + '\0' + display + '\0';
    for (const auto &process : std::filesystem::directory_iterator{"/proc"}) {
        if (contents(process.path() / "cmdline").contains(arguments))
            return atoi(process.path().filename().c_str());
    }
    return 0;
}

x11_client::x11_client(const std::string &display) : fd(connect_to("/tmp/.X11-unix/X" + display.substr(1)))
{
    if (fd >= 0)
        connecting = std::thread{[this] { connect_and_prepare(); }};
}

x11_client::~x11_client()
{
    vanish();
    if (connecting.joinable())
        connecting.join();
    if (connection != nullptr)
        xcb_disconnect(connection);
}

// The library waits until the X server greets it, and the X server starts only when the compositor sees the
// connection.
void x11_client::connect_and_prepare()
{
    connection = xcb_connect_to_fd(fd, nullptr);
    if (xcb_connection_has_error(connection) != 0) {
        failed = true;
        return;
    }
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    root = screen->root;
    visual = screen->root_visual;
    connected = true;
}

bool x11_client::lost() const
{
    return fd < 0 || failed || (connected && xcb_connection_has_error(connection) != 0);
}

void x11_client::vanish()
{
    if (connected)
        xcb_flush(connection);
    if (fd >= 0)
        shutdown(fd, SHUT_RDWR);
}

uint32_t x11_client::atom(std::string_view name)
{
    if (const auto known = atoms.find(name); known != atoms.end())
        return known->second;
    const reply<xcb_intern_atom_reply_t> answer{xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, uint16_t(name.size()), name.data()), nullptr)};
    return atoms.emplace(name, answer != nullptr ? answer->atom : 0).first->second;
}

template <class Event> static const Event &as(const xcb_generic_event_t &event)
{
    return reinterpret_cast<const Event &>(event);
}

static uint32_t window_of(const xcb_generic_event_t &event)
{
    switch (event.response_type & 0x7f) {
    case XCB_CONFIGURE_NOTIFY:
        return as<xcb_configure_notify_event_t>(event).window;
    case XCB_CLIENT_MESSAGE:
        return as<xcb_client_message_event_t>(event).window;
    case XCB_FOCUS_IN:
    case XCB_FOCUS_OUT:
        return as<xcb_focus_in_event_t>(event).event;
    case XCB_KEY_PRESS:
    case XCB_BUTTON_PRESS:
    case XCB_MOTION_NOTIFY:
    case XCB_ENTER_NOTIFY:
    case XCB_LEAVE_NOTIFY:
        return as<xcb_button_press_event_t>(event).event; // each of these events has the field at this place
    default:
        return 0;
    }
}

void x11_client::dispatch(const xcb_generic_event_t &event)
{
    if (event.response_type == 0) {
        error_count++;
        return;
    }
    const uint32_t id = window_of(event);
    for (x11_window &w : windows)
        if (w.window == id)
            w.handle(event);
}

void x11_client::pump()
{
    if (!connected || lost())
        return;
    xcb_flush(connection);
    while (const reply<xcb_generic_event_t> event{xcb_poll_for_event(connection)})
        dispatch(*event);
}

void x11_client::roundtrip_begin()
{
    if (connected && !lost())
        asked = xcb_get_input_focus(connection).sequence;
}

bool x11_client::roundtrip_done()
{
    if (asked == 0 || lost())
        return true;
    void *answer = nullptr;
    xcb_generic_error_t *error = nullptr;
    if (xcb_poll_for_reply(connection, asked, &answer, &error) == 0)
        return false;
    free(answer);
    free(error);
    asked = 0;
    return true;
}

x11_window &x11_client::create(const x11_traits &traits)
{
    return windows.emplace_back(*this, traits);
}

std::vector<uint32_t> x11_client::stacking()
{
    const reply<xcb_query_tree_reply_t> tree{
        xcb_query_tree_reply(connection, xcb_query_tree(connection, root), nullptr)};
    if (tree == nullptr)
        return {};
    const xcb_window_t *children = xcb_query_tree_children(tree.get());
    return {children, children + xcb_query_tree_children_length(tree.get())};
}

x11_window::x11_window(x11_client &owner, const x11_traits &traits) : owned_by(&owner)
{
    xcb_connection_t *c = owner.connection;
    window = xcb_generate_id(c);
    const uint32_t values[]{traits.colour, traits.override_redirect ? 1U : 0U, window_events};
    xcb_create_window(c, XCB_COPY_FROM_PARENT, window, owner.root, int16_t(traits.x), int16_t(traits.y),
                      uint16_t(traits.width), uint16_t(traits.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      owner.visual, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    title(traits.title);
    wm_class(traits.wm_class);
    change("WM_PROTOCOLS", XCB_ATOM_ATOM, {owner.atom("WM_DELETE_WINDOW"), owner.atom("_NET_WM_PING")});
}

void x11_window::without_ping()
{
    change("WM_PROTOCOLS", XCB_ATOM_ATOM, {owned_by->atom("WM_DELETE_WINDOW")});
}

void x11_window::map()
{
    xcb_map_window(owned_by->connection, window);
}

void x11_window::unmap()
{
    xcb_unmap_window(owned_by->connection, window);
}

void x11_window::destroy()
{
    xcb_destroy_window(owned_by->connection, window);
}

void x11_window::override_redirect(bool on)
{
    const uint32_t value = on ? 1 : 0;
    xcb_change_window_attributes(owned_by->connection, window, XCB_CW_OVERRIDE_REDIRECT, &value);
}

void x11_window::property(std::string_view name, std::string_view type, std::string_view bytes)
{
    xcb_change_property(owned_by->connection, XCB_PROP_MODE_REPLACE, window, owned_by->atom(name),
                        owned_by->atom(type), 8, uint32_t(bytes.size()), bytes.data());
}

void x11_window::change(std::string_view name, uint32_t type, const std::vector<uint32_t> &values)
{
    xcb_change_property(owned_by->connection, XCB_PROP_MODE_REPLACE, window, owned_by->atom(name), type, 32,
                        uint32_t(values.size()), values.data());
}

void x11_window::title(std::string_view bytes)
{
    property("_NET_WM_NAME", "UTF8_STRING", bytes);
}

void x11_window::wm_class(std::string_view bytes)
{
    std::string both = "instance";
    both += '\0';
    both += bytes;
    both += '\0';
    property("WM_CLASS", "STRING", both);
}

void x11_window::transient_for(const x11_window &other)
{
    change("WM_TRANSIENT_FOR", XCB_ATOM_WINDOW, {other.window});
}

void x11_window::initial_state(std::string_view name)
{
    change("_NET_WM_STATE", XCB_ATOM_ATOM, {owned_by->atom(state_prefix + std::string{name})});
}

void x11_window::window_type(std::string_view name)
{
    const std::string prefix = "_NET_WM_WINDOW_TYPE";
    change(prefix, XCB_ATOM_ATOM, {owned_by->atom(prefix + "_" + std::string{name})});
}

void x11_window::without_title_bar()
{
    const std::vector<uint32_t> hints{motif_decorations, 0, 0, 0, 0};
    change("_MOTIF_WM_HINTS", owned_by->atom("_MOTIF_WM_HINTS"), hints);
}

void x11_window::urgency(bool on)
{
    change("WM_HINTS", XCB_ATOM_WM_HINTS, {on ? urgency_hint : 0, 0, 0, 0, 0, 0, 0, 0, 0});
}

void x11_window::size_hints(int min_width, int min_height, int max_width, int max_height)
{
    std::vector<uint32_t> hints(18);
    hints[0] = min_and_max_size;
    hints[5] = uint32_t(min_width);
    hints[6] = uint32_t(min_height);
    hints[7] = uint32_t(max_width);
    hints[8] = uint32_t(max_height);
    change("WM_NORMAL_HINTS", XCB_ATOM_WM_SIZE_HINTS, hints);
}

void x11_window::place(int x, int y, int width, int height)
{
    const uint32_t values[]{uint32_t(x), uint32_t(y), uint32_t(width), uint32_t(height)};
    constexpr auto fields =
        XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
    xcb_configure_window(owned_by->connection, window, fields, values);
}

void x11_window::move(int x, int y)
{
    const uint32_t values[]{uint32_t(x), uint32_t(y)};
    xcb_configure_window(owned_by->connection, window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, values);
}

void x11_window::resize(int width, int height)
{
    const uint32_t values[]{uint32_t(width), uint32_t(height)};
    xcb_configure_window(owned_by->connection, window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         values);
}

void x11_window::raise()
{
    const uint32_t mode = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(owned_by->connection, window, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
}

void x11_window::lower()
{
    const uint32_t mode = XCB_STACK_MODE_BELOW;
    xcb_configure_window(owned_by->connection, window, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
}

void x11_window::fill(uint32_t colour)
{
    xcb_change_window_attributes(owned_by->connection, window, XCB_CW_BACK_PIXEL, &colour);
    xcb_clear_area(owned_by->connection, 0, window, 0, 0, 0, 0);
}

void x11_window::take_input_focus()
{
    xcb_set_input_focus(owned_by->connection, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
}

void x11_window::send_to_root(const void *event)
{
    xcb_send_event(owned_by->connection, 0, owned_by->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   static_cast<const char *>(event));
}

void x11_window::forge_message(std::string_view type, const std::vector<uint32_t> &data)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = owned_by->atom(type);
    std::ranges::copy(data, message.data.data32);
    send_to_root(&message);
}

void x11_window::forge_configure_request(int width, int height)
{
    xcb_configure_request_event_t request{};
    request.response_type = XCB_CONFIGURE_REQUEST;
    request.parent = owned_by->root;
    request.window = window;
    request.width = uint16_t(width);
    request.height = uint16_t(height);
    request.value_mask = XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
    send_to_root(&request);
}

// These events begin alike: first the parent, or the window itself, and then the window.
void x11_window::forge_event(uint8_t type)
{
    struct {
        uint8_t type, detail;
        uint16_t sequence;
        uint32_t parent, window;
        std::array<uint32_t, 5> rest;
    } event{.type = type, .detail = 0, .sequence = 0, .parent = owned_by->root, .window = window, .rest = {}};
    static_assert(sizeof event == 32);
    send_to_root(&event);
}

void x11_window::request_state(bool on, std::string_view name, std::string_view second)
{
    const auto state = [&](std::string_view of) {
        return of.empty() ? 0 : owned_by->atom(state_prefix + std::string{of});
    };
    forge_message("_NET_WM_STATE", {on ? 1U : 0U, state(name), state(second), 1});
}

void x11_window::request_activate()
{
    forge_message("_NET_ACTIVE_WINDOW", {1});
}

void x11_window::request_iconify()
{
    forge_message("WM_CHANGE_STATE", {3});
}

void x11_window::request_normal()
{
    forge_message("WM_CHANGE_STATE", {1});
}

void x11_window::request_drag(uint32_t direction)
{
    forge_message("_NET_WM_MOVERESIZE", {0, 0, direction, 1, 1});
}

bool x11_window::heard(const std::string &event) const
{
    return std::ranges::contains(events, event);
}

void x11_window::handle_message(const xcb_client_message_event_t &message)
{
    if (message.type != owned_by->atom("WM_PROTOCOLS"))
        return;
    if (message.data.data32[0] == owned_by->atom("WM_DELETE_WINDOW")) {
        close_count++;
    } else if (message.data.data32[0] == owned_by->atom("_NET_WM_PING") && answers_pings) {
        xcb_client_message_event_t answer = message;
        answer.window = owned_by->root;
        send_to_root(&answer);
    }
}

void x11_window::handle(const xcb_generic_event_t &event)
{
    const auto &pointer = as<xcb_button_press_event_t>(event);
    const std::string at = std::format("{},{}", pointer.event_x, pointer.event_y);
    switch (event.response_type & 0x7f) {
    case XCB_CONFIGURE_NOTIFY: {
        const auto &told = as<xcb_configure_notify_event_t>(event);
        place_told = {told.x, told.y, told.width, told.height};
        configure_count++;
        break;
    }
    case XCB_CLIENT_MESSAGE:
        handle_message(as<xcb_client_message_event_t>(event));
        break;
    case XCB_FOCUS_IN:
    case XCB_FOCUS_OUT:
        // When no window has the focus, the one under the X server's own pointer receives these events too.
        if (as<xcb_focus_in_event_t>(event).detail != XCB_NOTIFY_DETAIL_POINTER)
            focused = (event.response_type & 0x7f) == XCB_FOCUS_IN;
        break;
    case XCB_KEY_PRESS:
        events.push_back(std::format("key {}", pointer.detail));
        break;
    case XCB_BUTTON_PRESS:
        events.push_back(std::format("button {} {}", pointer.detail, at));
        break;
    case XCB_MOTION_NOTIFY:
        events.push_back("motion " + at);
        break;
    case XCB_ENTER_NOTIFY:
        events.push_back("enter " + at);
        break;
    case XCB_LEAVE_NOTIFY:
        events.emplace_back("leave");
        break;
    default:
        break;
    }
}

std::vector<std::string> x11_window::states() const
{
    xcb_connection_t *c = owned_by->connection;
    const reply<xcb_get_property_reply_t> property{xcb_get_property_reply(
        c, xcb_get_property(c, 0, window, owned_by->atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 0, 32), nullptr)};
    std::vector<std::string> names;
    if (property == nullptr)
        return names;
    const auto *atoms = static_cast<const xcb_atom_t *>(xcb_get_property_value(property.get()));
    for (int i = 0; i < xcb_get_property_value_length(property.get()) / 4; i++) {
        const reply<xcb_get_atom_name_reply_t> name{
            xcb_get_atom_name_reply(c, xcb_get_atom_name(c, atoms[i]), nullptr)};
        const std::string_view text{xcb_get_atom_name_name(name.get()),
                                    size_t(xcb_get_atom_name_name_length(name.get()))};
        names.emplace_back(text.substr(std::min(text.size(), state_prefix.size())));
    }
    return names;
}

uint32_t x11_window::wm_state() const
{
    xcb_connection_t *c = owned_by->connection;
    const xcb_atom_t name = owned_by->atom("WM_STATE");
    const reply<xcb_get_property_reply_t> property{
        xcb_get_property_reply(c, xcb_get_property(c, 0, window, name, name, 0, 2), nullptr)};
    if (property == nullptr || xcb_get_property_value_length(property.get()) < 4)
        return 0;
    return *static_cast<const uint32_t *>(xcb_get_property_value(property.get()));
}

bool x11_window::has_state(std::string_view name) const
{
    return std::ranges::contains(states(), name);
}

} // namespace test
