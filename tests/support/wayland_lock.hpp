// A client that locks the session.
#pragma once

#include "wayland_client.hpp"
#include "wayland_proxy.hpp"

struct ext_session_lock_v1;

namespace test
{

class session_lock;

// A lock's surface on one output.
class lock_surface
{
public:
    lock_surface(session_lock &lock, const std::string &name, wl_output *output);
    ~lock_surface();
    lock_surface(const lock_surface &) = delete;
    lock_surface &operator=(const lock_surface &) = delete;

    // How it behaves from now on
    bool auto_draw = true; // acks each configure and draws at its size

    void ack(); // the last configure
    void draw(test::size s, uint32_t argb);

    [[nodiscard]] int configures() const { return configure_events; }
    [[nodiscard]] test::size size() const { return told; }
    [[nodiscard]] wl_surface *get() const { return surface; }

private:
    friend struct lock_events;
    client *owned_by;
    wl_surface *surface;
    proxy<ext_session_lock_surface_v1> role;
    uint32_t serial = 0;
    int configure_events = 0;
    test::size told{0, 0};
};

class session_lock
{
public:
    explicit session_lock(client &c);
    ~session_lock();
    session_lock(const session_lock &) = delete;
    session_lock &operator=(const session_lock &) = delete;

    // Creates a surface on an output. Events are recorded with the name. Its address never changes.
    lock_surface &cover(const std::string &name, wl_output *output);
    void unlock();
    // Only a lock that was never active, or that was refused, may be destroyed.
    void destroy();

    [[nodiscard]] bool locked() const { return is_locked; }
    // Returns true if the compositor has refused the lock or given it up.
    [[nodiscard]] bool finished() const { return is_finished; }
    [[nodiscard]] client &owner() const { return *owned_by; }

private:
    friend struct lock_events;
    friend class lock_surface;
    client *owned_by;
    proxy<ext_session_lock_manager_v1> manager;
    ext_session_lock_v1 *object; // its state decides which request may destroy it
    std::list<lock_surface> surfaces;
    bool is_locked = false, is_finished = false;
};

} // namespace test
