// A Wayland client in the test's own thread. It is pumped and never blocks. It does what a test tells it to
// do, even if that is wrong.
#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

struct wl_buffer;
struct wl_callback;
struct wl_compositor;
struct wl_display;
struct wl_interface;
struct wl_output;
struct wl_registry;
struct wl_seat;
struct wl_shm;
struct wl_subsurface;
struct wl_surface;
struct xdg_surface;
struct xdg_toplevel;
struct xdg_wm_base;
struct zwlr_gamma_control_manager_v1;
struct zwlr_gamma_control_v1;

namespace test
{

struct size {
    int width, height;
    friend bool operator==(const size &, const size &) = default;
};
std::ostream &operator<<(std::ostream &out, const size &s);

// Bits for the states of a window in a configure.
enum window_state : unsigned { MAXIMIZED = 1, FULLSCREEN = 2, RESIZING = 4, ACTIVATED = 8, TILED = 16 };

struct configure {
    int width = 0, height = 0;
    unsigned states = 0; // bits of window_state
    uint32_t serial = 0;
    [[nodiscard]] test::size size() const { return {width, height}; }
};

struct global {
    uint32_t name;
    std::string interface;
    uint32_t version;
};

// Why the server ended the connection.
struct protocol_error {
    std::string interface;
    uint32_t code;
    friend bool operator==(const protocol_error &, const protocol_error &) = default;
};
std::ostream &operator<<(std::ostream &out, const protocol_error &e);

class client;

// One xdg-shell window. Its client owns it, and its address never changes.
class window
{
public:
    window(client &owner, std::string app_id);
    ~window();
    window(const window &) = delete;
    window &operator=(const window &) = delete;

    // How it behaves from now on
    test::size preferred{640, 480}; // drawn when the compositor leaves the choice
    bool auto_ack = true;
    bool auto_draw = true; // draws at each configure that it acks, at its size

    // The stages of its life, one call each
    void create_surface();
    void create_xdg_surface();
    void create_toplevel(); // with the app id
    void commit();
    void ack(); // the last configure
    // Attaches a new buffer of one colour and commits.
    void draw(test::size s, uint32_t argb);
    void unmap(); // attaches nothing and commits
    void destroy_toplevel();
    void destroy_role(); // toplevel and xdg_surface
    void destroy(); // everything

    // Goes through all remaining stages up to the first commit. A window that was unmapped starts over.
    void open();
    // Draws another colour at the last size.
    void fill(uint32_t argb);

    // Properties and requests. They create the toplevel if there is none.
    void title(const std::string &text);
    void app_id(const std::string &text);
    void min_size(test::size s);
    void max_size(test::size s);
    void parent(window *other);
    // Surface coordinates. It is sent with each commit.
    void geometry(int x, int y, int width, int height);
    // Only this part takes input. It is sent with the next commit.
    void input_region(int x, int y, int width, int height);
    // This part hides what is behind it. It is sent with the next commit.
    void opaque_region(int x, int y, int width, int height);
    // Adds a desynchronised subsurface at this place and draws it. The caller must commit the window to show
    // it.
    void add_subsurface(int x, int y, test::size s);
    void paint_subsurfaces(test::size s, uint32_t argb);
    void destroy_subsurfaces();
    void request_maximize();
    void request_unmaximize();
    void request_fullscreen(wl_output *output = nullptr); // null lets the compositor choose
    void request_unfullscreen();
    void request_minimize();
    void request_move(wl_seat *seat, uint32_t serial);
    // `edges` is one of xdg_toplevel's resize edges.
    void request_resize(wl_seat *seat, uint32_t serial, uint32_t edges);
    void request_frame();

    // What it was told
    [[nodiscard]] const std::vector<configure> &all_configures() const { return configures; }
    [[nodiscard]] int configure_count() const { return int(configures.size()); }
    [[nodiscard]] configure last() const { return configures.empty() ? configure{} : configures.back(); }
    [[nodiscard]] bool has(window_state state) const { return (last().states & state) != 0; }
    [[nodiscard]] int closes() const { return close_events; }
    [[nodiscard]] int frames() const { return frame_callbacks; }
    // Returns the names of the outputs that the surface is on.
    [[nodiscard]] std::vector<std::string> outputs() const;
    [[nodiscard]] uint32_t surface_id() const;
    [[nodiscard]] client &owner() const { return *owned_by; }
    [[nodiscard]] wl_surface *get() const { return surface; }
    [[nodiscard]] xdg_surface *shell_surface() const { return role; }
    [[nodiscard]] xdg_toplevel *shell_toplevel() const { return toplevel; }

private:
    friend struct window_events;
    friend struct client_events;

    void ensure_toplevel();
    void handle_configure(uint32_t serial);

    client *owned_by;
    std::string id;
    wl_surface *surface = nullptr;
    xdg_surface *role = nullptr;
    xdg_toplevel *toplevel = nullptr;
    std::vector<wl_callback *> frame_requests; // not answered yet
    std::vector<std::pair<wl_surface *, wl_subsurface *>> subsurfaces;
    std::vector<wl_output *> entered;
    configure pending;
    std::vector<configure> configures;
    int close_events = 0;
    int frame_callbacks = 0;
    test::size drawn{0, 0};
    uint32_t colour = 0xff808080;
    bool opened = false;
    int unmapped_at = 0; // round trip after which no configure from before the unmap can arrive
};

class gamma_control
{
public:
    gamma_control(client &owner, wl_output *output);
    ~gamma_control();
    gamma_control(const gamma_control &) = delete;
    gamma_control &operator=(const gamma_control &) = delete;

    [[nodiscard]] uint32_t size() const { return table_size; }
    [[nodiscard]] bool failed() const { return refused; }
    void set_identity();
    void destroy();

private:
    friend struct gamma_events;
    zwlr_gamma_control_v1 *control;
    uint32_t table_size = 0;
    bool refused = false;
};

class client
{
public:
    // Takes over one end of a connected socket.
    explicit client(int fd);
    ~client();
    client(const client &) = delete;
    client &operator=(const client &) = delete;

    // Sends what is queued and reads what has arrived. Never blocks.
    void pump();
    // Returns true once the registry's first list is complete and the outputs on it have sent their names.
    [[nodiscard]] bool ready() const { return answered >= 2; }
    // Returns 0, or the errno of a lost connection, which is EPROTO after a protocol error.
    [[nodiscard]] int error() const;
    // Returns nothing unless error() is EPROTO.
    [[nodiscard]] std::optional<test::protocol_error> protocol_error() const;
    // Starts a round trip. It is done once the server has handled everything that was sent before.
    int roundtrip_begin();
    [[nodiscard]] bool roundtrip_done(int id) const { return answered >= id; }
    // Closes the socket as a crash would.
    void vanish();

    // Creates a window with the app id but without a surface.
    window &create_window(const std::string &app_id);
    gamma_control &gamma(const std::string &output_name);

    // For surfaces that are not windows. Events are recorded with the name.
    wl_surface *create_surface(const std::string &name);
    void destroy_surface(wl_surface *surface);
    // Attaches a new buffer of one colour and commits.
    void paint(wl_surface *surface, test::size s, uint32_t argb);
    // Does the same with opaque pixels that differ from their neighbours.
    void paint_noise(wl_surface *surface, test::size s);
    [[nodiscard]] std::string name_of(wl_surface *surface) const;

    // Returns null if there is no such output.
    [[nodiscard]] wl_output *output_named(const std::string &name) const;

    // Binds a global and returns the new object, which the caller destroys. Returns null if there is no such
    // global.
    void *bind(const wl_interface &interface, uint32_t version);
    [[nodiscard]] xdg_wm_base *shell() const { return wm_base; }
    [[nodiscard]] wl_compositor *surfaces() const { return compositor; }

    [[nodiscard]] const std::vector<global> &globals() const { return announced; }
    [[nodiscard]] int pings() const { return ping_events; }
    bool answer_pings = true;

private:
    friend class window;
    friend class gamma_control;
    friend struct client_events;

    struct output {
        uint32_t global;
        wl_output *proxy;
        std::string name;
    };
    [[nodiscard]] std::string name_of(const wl_output *proxy) const;
    void show(wl_surface *surface, test::size s, const std::function<void(uint32_t *, size_t)> &fill);

    wl_display *display;
    wl_registry *registry = nullptr;
    wl_compositor *compositor = nullptr;
    wl_shm *shm = nullptr;
    xdg_wm_base *wm_base = nullptr;
    zwlr_gamma_control_manager_v1 *gamma_manager = nullptr;
    std::vector<global> announced;
    std::list<output> outputs;
    std::list<window> windows;
    std::map<wl_surface *, std::string> surface_names;
    std::vector<wl_buffer *> buffers; // the compositor still holds them
    std::list<gamma_control> gamma_controls;
    std::vector<wl_callback *> roundtrips;
    int asked = 0, answered = 0;
    int ping_events = 0;
};

} // namespace test
