// A client can also type and point with virtual devices, inhibit shortcuts, ask for a window's activation,
// and wait until the user is idle.
#pragma once

#include "wayland_seat.hpp"

namespace test
{

class virtual_keyboard
{
public:
    // The keyboard has no keymap yet.
    explicit virtual_keyboard(seat &s);
    ~virtual_keyboard();
    virtual_keyboard(const virtual_keyboard &) = delete;
    virtual_keyboard &operator=(const virtual_keyboard &) = delete;

    void keymap(const std::string &text);
    // The file may be shorter or longer than the size that is sent.
    void keymap(int fd, uint32_t size);
    void key(uint32_t code, bool down);
    void modifiers(uint32_t depressed);

private:
    proxy<zwp_virtual_keyboard_manager_v1> manager;
    proxy<zwp_virtual_keyboard_v1> object;
};

class virtual_pointer
{
public:
    explicit virtual_pointer(seat &s);
    ~virtual_pointer();
    virtual_pointer(const virtual_pointer &) = delete;
    virtual_pointer &operator=(const virtual_pointer &) = delete;

    void move(double dx, double dy);
    void move_to(uint32_t x, uint32_t y, uint32_t width, uint32_t height);
    void button(uint32_t code, bool down);

private:
    proxy<zwlr_virtual_pointer_manager_v1> manager;
    proxy<zwlr_virtual_pointer_v1> object;
};

class shortcuts_inhibitor
{
public:
    shortcuts_inhibitor(seat &s, window &w);
    ~shortcuts_inhibitor();
    shortcuts_inhibitor(const shortcuts_inhibitor &) = delete;
    shortcuts_inhibitor &operator=(const shortcuts_inhibitor &) = delete;

    [[nodiscard]] bool active() const { return is_active; }

private:
    friend struct inhibitor_events;
    proxy<zwp_keyboard_shortcuts_inhibit_manager_v1> manager;
    proxy<zwp_keyboard_shortcuts_inhibitor_v1> object;
    bool is_active = false;
};

// A token with which a window asks for attention.
class activation
{
public:
    explicit activation(client &c);
    ~activation();
    activation(const activation &) = delete;
    activation &operator=(const activation &) = delete;

    [[nodiscard]] bool has_token() const { return !token.empty(); }
    void activate(wl_surface *surface);

private:
    friend struct activation_events;
    proxy<xdg_activation_v1> manager;
    proxy<xdg_activation_token_v1> request;
    std::string token;
};

// Records "idle" as soon as the user is idle, and "active" when that ends.
class idle_watch
{
public:
    explicit idle_watch(seat &s);
    ~idle_watch();
    idle_watch(const idle_watch &) = delete;
    idle_watch &operator=(const idle_watch &) = delete;

    [[nodiscard]] int times_idle() const { return idled; }
    [[nodiscard]] int times_active() const { return resumed; }

private:
    friend struct idle_events;
    proxy<ext_idle_notifier_v1> notifier;
    proxy<ext_idle_notification_v1> object;
    int idled = 0, resumed = 0;
};

} // namespace test
