#include "wayland_lock.hpp"

#include "ext-session-lock-v1-client-protocol.h"

#include <utility>
#include <wayland-client.h>

namespace test
{

struct lock_events {
    static void locked(void *data, ext_session_lock_v1 *)
    {
        static_cast<session_lock *>(data)->is_locked = true;
    }
    static void finished(void *data, ext_session_lock_v1 *)
    {
        static_cast<session_lock *>(data)->is_finished = true;
    }
    static void configure(void *data, ext_session_lock_surface_v1 *, uint32_t serial, uint32_t width,
                          uint32_t height)
    {
        auto &self = *static_cast<lock_surface *>(data);
        self.serial = serial;
        self.configure_events++;
        self.told = {int(width), int(height)};
        if (!self.auto_draw)
            return;
        self.ack();
        self.draw(self.told, 0xff202020);
    }
};

lock_surface::lock_surface(session_lock &lock, const std::string &name, wl_output *output)
    : owned_by(&lock.owner()), surface(owned_by->create_surface(name)),
      role(ext_session_lock_v1_get_lock_surface(lock.object, surface, output))
{
    static constexpr ext_session_lock_surface_v1_listener listener{.configure = lock_events::configure};
    ext_session_lock_surface_v1_add_listener(role.get(), &listener, this);
}

lock_surface::~lock_surface()
{
    role.reset();
    owned_by->destroy_surface(surface);
}

void lock_surface::ack()
{
    ext_session_lock_surface_v1_ack_configure(role.get(), serial);
}

void lock_surface::draw(test::size s, uint32_t argb)
{
    owned_by->paint(surface, s, argb);
}

session_lock::session_lock(client &c)
    : owned_by(&c),
      manager(static_cast<ext_session_lock_manager_v1 *>(c.bind(ext_session_lock_manager_v1_interface, 1))),
      object(ext_session_lock_manager_v1_lock(manager.get()))
{
    static constexpr ext_session_lock_v1_listener listener{
        .locked = lock_events::locked,
        .finished = lock_events::finished,
    };
    ext_session_lock_v1_add_listener(object, &listener, this);
}

// Destroying an active lock would be a protocol error, so a client that holds the lock unlocks the session.
session_lock::~session_lock()
{
    if (object != nullptr && is_locked)
        unlock();
    else
        destroy();
    surfaces.clear();
}

lock_surface &session_lock::cover(const std::string &name, wl_output *output)
{
    return surfaces.emplace_back(*this, name, output);
}

void session_lock::unlock()
{
    ext_session_lock_v1_unlock_and_destroy(std::exchange(object, nullptr));
}

void session_lock::destroy()
{
    if (object != nullptr)
        ext_session_lock_v1_destroy(std::exchange(object, nullptr));
}

} // namespace test
