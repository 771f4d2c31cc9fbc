// An X11 client in the test's own thread: it is pumped and never waits for the compositor, and it does what a
// test tells it to, well-behaved or not.
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

// The process that serves a display like ":3"; 0 when there is none.
pid_t x_server_of(const std::string &display);

struct x11_traits {
    int x = 0, y = 0, width = 300, height = 200;
    bool override_redirect = false;
    std::string wm_class = "xapp";
    std::string title = "an X11 window";
    uint32_t colour = 0x3366cc;
};

// What an X11 window was last told of its place, in layout coordinates.
struct x11_place {
    int x = 0, y = 0, width = 0, height = 0;
    friend bool operator==(const x11_place &, const x11_place &) = default;
};

// One window. Owned by its client; its address stays.
class x11_window
{
public:
    x11_window(x11_client &owner, const x11_traits &traits);

    // Its life. The X server destroys what is left with the connection.
    void map();
    void unmap();
    void destroy();
    // Takes effect with the next event that the window causes.
    void override_redirect(bool on);

    // Before it is mapped, or while it is
    void title(std::string_view bytes);
    void wm_class(std::string_view bytes);
    void transient_for(const x11_window &other);
    void initial_state(std::string_view name); // "FULLSCREEN" for _NET_WM_STATE_FULLSCREEN
    void without_title_bar();
    void urgency(bool on);
    void size_hints(int min_width, int min_height, int max_width, int max_height);
    // 8 bits each.
    void property(std::string_view name, std::string_view type, std::string_view bytes);
    // Values may wrap around: they are sent in the protocol's widths.
    void place(int x, int y, int width, int height);
    void move(int x, int y);
    void resize(int width, int height);
    void raise();
    void lower();
    void fill(uint32_t colour);
    void take_input_focus(); // past the window manager

    // Requests to the window manager
    void request_state(bool on, std::string_view name, std::string_view second = {});
    void request_activate();
    void request_iconify();
    void request_normal();
    void request_drag(uint32_t direction); // of _NET_WM_MOVERESIZE: 0 to 7 resize, 8 moves

    // Events under the X server's name, sent to its window manager
    void forge_message(std::string_view type, const std::vector<uint32_t> &data);
    void forge_configure_request(int width, int height);
    void forge_event(uint8_t type); // about this window, all else 0

    // How it behaves from now on
    bool answers_pings = true;

    // What it was told
    [[nodiscard]] const x11_place &told() const { return place_told; }
    [[nodiscard]] int configures() const { return configure_count; }
    [[nodiscard]] int closes() const { return close_count; }
    [[nodiscard]] bool has_focus() const { return focused; }
    // "key CODE", "button N X,Y", "motion X,Y", "enter X,Y", "leave" in the order of arrival.
    [[nodiscard]] bool heard(const std::string &event) const;
    void forget_events() { events.clear(); }
    // Asks the X server and waits: the names in _NET_WM_STATE, without their prefix.
    [[nodiscard]] std::vector<std::string> states() const;
    [[nodiscard]] bool has_state(std::string_view name) const;
    // The same for WM_STATE: 0 withdrawn or unknown, 1 normal, 3 iconic.
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
    // Connects to a display like ":3", which may only start then: ready() tells when it has.
    explicit x11_client(const std::string &display);
    ~x11_client();
    x11_client(const x11_client &) = delete;
    x11_client &operator=(const x11_client &) = delete;

    [[nodiscard]] bool ready() const { return connected; }
    // The connection could not be made, or has broken.
    [[nodiscard]] bool lost() const;
    // Closes the connection as a crash does.
    void vanish();
    // Sends what is queued, reads what has arrived. Never blocks.
    void pump();
    // Asks the X server for a sign of life.
    void roundtrip_begin();
    [[nodiscard]] bool roundtrip_done();

    // Not mapped yet. The client must be ready.
    x11_window &create(const x11_traits &traits = {});
    // All windows of the display's root, from the bottom to the top. Waits for the X server.
    [[nodiscard]] std::vector<uint32_t> stacking();
    // How many requests the X server has refused.
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
    unsigned asked = 0; // sequence of the round trip under way; 0 for none
    int error_count = 0;
    std::atomic<bool> connected = false, failed = false; // one of them, once the thread is done
    std::thread connecting;
};

} // namespace test
