// Menus and decoration objects for a test's windows.
#pragma once

#include "wayland_client.hpp"
#include "wayland_layer.hpp"
#include "wayland_seat.hpp"

namespace test
{

// Where a popup wants to be, in its parent's window geometry. Its anchor and gravity are at the bottom right,
// so that it hangs below its anchor like a menu.
struct placement {
    int x = 0, y = 0; // of the anchor point
    test::size size{100, 60};
    uint32_t adjustment = 0; // of xdg_positioner_constraint_adjustment
};

class popup
{
public:
    enum class draws : bool { never, always };

    // Opens a popup up to its first commit. The parent's surface must have its role. The popup acks each
    // configure and then draws. With a seat it grabs the input, and `serial` is that of the press which
    // opened it.
    popup(window &parent, const placement &where, draws when = draws::always, const seat *grabs = nullptr,
          uint32_t serial = 0);
    popup(popup &parent, const placement &where, const seat *grabs = nullptr, uint32_t serial = 0);
    popup(layer_surface &parent, const placement &where, const seat *grabs = nullptr, uint32_t serial = 0);
    popup(client &owner, xdg_surface *parent, const placement &where, draws when = draws::always,
          const seat *grabs = nullptr, uint32_t serial = 0, layer_surface *adopted_by = nullptr);
    ~popup();
    popup(const popup &) = delete;
    popup &operator=(const popup &) = delete;

    // Destroys the popup but keeps its xdg_surface. The second call makes another popup of that surface.
    void drop_role();
    void take_role_again(xdg_surface *parent, const placement &where);
    void attach_nothing(); // and commits
    void reposition(const placement &where, uint32_t token);
    void grab(const seat &grabs, uint32_t serial);
    void destroy_surface(); // before its role, which is a client's mistake
    void destroy();

    [[nodiscard]] int configure_count() const { return configures; }
    // The place that the compositor chose, relative to the parent's window geometry.
    [[nodiscard]] int x() const { return last_x; }
    [[nodiscard]] int y() const { return last_y; }
    [[nodiscard]] test::size size() const { return last_size; }
    [[nodiscard]] bool dismissed() const { return dismissals > 0; }
    [[nodiscard]] int times_dismissed() const { return dismissals; }
    [[nodiscard]] uint32_t last_token() const { return token; }
    [[nodiscard]] xdg_surface *shell_surface() const { return role; }
    [[nodiscard]] xdg_popup *get() const { return object; }

private:
    friend struct popup_events;

    client *owned_by;
    wl_surface *surface = nullptr;
    xdg_surface *role = nullptr;
    xdg_popup *object = nullptr;
    draws when;
    int configures = 0, last_x = 0, last_y = 0;
    test::size last_size{0, 0};
    uint32_t token = 0;
    int dismissals = 0;
};

// The values of zxdg_toplevel_decoration_v1_mode.
enum title_bar_mode : uint32_t { CLIENT_SIDE = 1, SERVER_SIDE = 2 };

// A window's object of xdg-decoration.
class decoration
{
public:
    explicit decoration(window &w);
    ~decoration();
    decoration(const decoration &) = delete;
    decoration &operator=(const decoration &) = delete;

    void ask(uint32_t mode); // may be an invalid value
    void ask_nothing();
    [[nodiscard]] uint32_t mode() const { return last_mode; } // 0 before the first answer
    [[nodiscard]] int answers() const { return mode_events; }

private:
    friend struct decoration_events;

    proxy<zxdg_decoration_manager_v1> manager;
    proxy<zxdg_toplevel_decoration_v1> object;
    uint32_t last_mode = 0;
    int mode_events = 0;
};

} // namespace test
