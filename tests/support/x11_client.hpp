// An X11 client in the test's own thread. It is pumped and never waits for the compositor. It does what a
// test tells it to do, even if that is wrong.
#pragma once

#include <atomic>
#include <cstdint>
#include <list>
#include <map>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <thread>
#include <vector>
#include <xcb/xcb.h>

namespace test
{

class x11_client;

// Returns the process that serves a display like ":3", or 0 if there is none.
pid_t x_server_of(const std::string &display);

struct x11_traits {
    int x = 0, y = 0, width = 300, height = 200;
    bool override_redirect = false;
    std::string wm_class = "xapp";
    std::string title = "an X11 window";
    uint32_t colour = 0x3366cc;
};

// The place that an X11 window was last told, in layout coordinates.
struct x11_place {
    int x = 0, y = 0, width = 0, height = 0;
    friend bool operator==(const x11_place &, const x11_place &) = default;
};

// One window. Its client owns it, and its address never changes.
class x11_window
{
public:
    x11_window(x11_client &owner, const x11_traits &traits);

    // Its life. When the connection ends, the X server destroys what is left.
    void map();
    void unmap();
    void destroy();
    // Takes effect with the next event that the window causes.
    void override_redirect(bool on);

    // To be set before it is mapped, or while it is
    void title(std::string_view bytes);
    void wm_class(std::string_view bytes);
    void transient_for(const x11_window &other);
    void initial_state(std::string_view name); // "FULLSCREEN" for _NET_WM_STATE_FULLSCREEN
    void without_title_bar();
    void without_ping(); // its client does not answer pings, and says so
    void window_type(std::string_view name); // "TOOLTIP" for _NET_WM_WINDOW_TYPE_TOOLTIP
    void urgency(bool on);
    void size_hints(int min_width, int min_height, int max_width, int max_height);
    // The property has items of 8 bits.
    void property(std::string_view name, std::string_view type, std::string_view bytes);
    // Values may wrap around, because they are sent in the protocol's widths.
    void place(int x, int y, int width, int height);
    void move(int x, int y);
    void resize(int width, int height);
    void raise();
    void lower();
    void fill(uint32_t colour);
    void take_input_focus(); // without asking the window manager

    // Requests to the window manager
    void request_state(bool on, std::string_view name, std::string_view second = {});
    void request_activate();
    void request_iconify();
    void request_normal();
    void request_drag(uint32_t direction); // as in _NET_WM_MOVERESIZE: 0 to 7 resize, 8 moves

    // Events that the client forges in the X server's name and sends to its window manager
    void forge_message(std::string_view type, const std::vector<uint32_t> &data);
    void forge_configure_request(int width, int height);
    void forge_event(uint8_t type); // about this window, with all other fields 0

    // How it behaves from now on
    bool answers_pings = true;

    // What it was told
    [[nodiscard]] const x11_place &told() const { return place_told; }
    [[nodiscard]] int configures() const { return configure_count; }
    [[nodiscard]] int closes() const { return close_count; }
    [[nodiscard]] bool has_focus() const { return focused; }
    // Events are "key CODE", "button N X,Y", "motion X,Y", "enter X,Y" and "leave".
    [[nodiscard]] bool heard(const std::string &event) const;
    void forget_events() { events.clear(); }
    // Asks the X server and waits. Returns the names in _NET_WM_STATE without their prefix.
    [[nodiscard]] std::vector<std::string> states() const;
    [[nodiscard]] bool has_state(std::string_view name) const;
    // Asks for WM_STATE in the same way: 0 is withdrawn or unknown, 1 is normal, 3 is iconic.
    [[nodiscard]] uint32_t wm_state() const;

    [[nodiscard]] uint32_t id() const { return window; }

private:
    friend class x11_client;
    void handle(const xcb_generic_event_t &event);
    void handle_message(const xcb_client_message_event_t &message);
    void change(std::string_view name, uint32_t type, const std::vector<uint32_t> &values);
    void send_to_root(const void *event);

    x11_client *owned_by;
    uint32_t window = 0;
    x11_place place_told;
    int configure_count = 0, close_count = 0;
    bool focused = false;
    std::vector<std::string> events;
};

class x11_client
{
public:
    // Connects to a display like ":3". Its X server may start only then, and ready() tells when it has.
    explicit x11_client(const std::string &display);
    ~x11_client();
    x11_client(const x11_client &) = delete;
    x11_client &operator=(const x11_client &) = delete;

    [[nodiscard]] bool ready() const { return connected; }
    // Returns true if the connection could not be made or has broken.
    [[nodiscard]] bool lost() const;
    // Closes the connection as a crash would.
    void vanish();
    // Sends what is queued and reads what has arrived. Never blocks.
    void pump();
    // Starts a round trip to the X server.
    void roundtrip_begin();
    [[nodiscard]] bool roundtrip_done();

    // Creates a window, which is not mapped yet. The client must be ready.
    x11_window &create(const x11_traits &traits = {});
    // Returns all windows of the display's root, from bottom to top. Waits for the X server.
    [[nodiscard]] std::vector<uint32_t> stacking();
    // Returns how many requests the X server has refused.
    [[nodiscard]] int errors() const { return error_count; }

private:
    friend class x11_window;
    void connect_and_prepare();
    uint32_t atom(std::string_view name);
    void dispatch(const xcb_generic_event_t &event);

    int fd = -1;
    xcb_connection_t *connection = nullptr;
    uint32_t root = 0, visual = 0;
    std::map<std::string, uint32_t, std::less<>> atoms;
    std::list<x11_window> windows;
    unsigned asked = 0; // sequence number of the round trip under way, or 0
    int error_count = 0;
    std::atomic<bool> connected = false, failed = false; // one of them becomes true when the thread is done
    std::thread connecting;
};

} // namespace test
