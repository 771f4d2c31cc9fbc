// A panel, dock or wallpaper of a test's client, which is a surface of the layer shell.
#pragma once

#include "wayland_client.hpp"
#include "wayland_proxy.hpp"

struct xdg_popup;
struct zwlr_layer_surface_v1;

namespace test
{

// The bits of zwlr_layer_surface_v1_anchor.
enum edges : uint32_t { TOP = 1, BOTTOM = 2, LEFT = 4, RIGHT = 8, ALL_EDGES = 15 };

enum class layer : uint32_t { background, bottom, top, overlay };
enum class keyboard_wish : uint32_t { none, exclusive, on_demand };

struct margins {
    int top = 0, right = 0, bottom = 0, left = 0;
};

struct layer_traits {
    std::string name = "panel"; // its namespace, and its name in recorded events
    test::layer on = layer::top;
    std::string output; // if empty, the compositor chooses
    test::size size{0, 0};
    uint32_t anchor = 0;
    int zone = 0;
    test::margins margins{};
    keyboard_wish keyboard = keyboard_wish::none;
    uint32_t argb = 0xff3060c0;
    bool opens = true; // runs its stages up to the first commit
};

// Describes a bar along the top edge that reserves its own height.
layer_traits top_bar(int height);

class layer_surface
{
public:
    // The surface acks each configure and then draws.
    layer_surface(client &owner, const layer_traits &traits);
    ~layer_surface();
    layer_surface(const layer_surface &) = delete;
    layer_surface &operator=(const layer_surface &) = delete;

    bool auto_draw = true;

    // Requests that are sent with the next commit.
    void size(uint32_t width, uint32_t height);
    void anchor(uint32_t edges);
    void zone(int32_t pixels);
    void margins(const test::margins &m);
    void keyboard(keyboard_wish wish);
    void move_to(layer other);

    void commit();
    void draw(test::size s); // and commits
    void unmap(); // attaches nothing and commits
    void adopt(xdg_popup *popup); // becomes the parent of a popup without one
    void destroy_surface(); // before its role, which is a client's mistake
    void destroy();

    [[nodiscard]] int configure_count() const { return configures; }
    [[nodiscard]] test::size last_size() const { return told; }
    [[nodiscard]] bool closed() const { return close_events > 0; }
    [[nodiscard]] client &owner() const { return *owned_by; }
    [[nodiscard]] wl_surface *get() const { return surface; }
    [[nodiscard]] uint32_t surface_id() const;

private:
    friend struct layer_events;

    client *owned_by;
    uint32_t colour;
    proxy<zwlr_layer_shell_v1> shell;
    wl_surface *surface = nullptr;
    zwlr_layer_surface_v1 *object = nullptr;
    int configures = 0, close_events = 0;
    test::size told{0, 0};
    int unmapped_at = 0; // round trip after which no configure from before the unmap can arrive
};

} // namespace test
