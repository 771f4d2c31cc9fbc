#include "wayland_devices.hpp"

#include "ext-idle-notify-v1-client-protocol.h"
#include "keyboard-shortcuts-inhibit-unstable-v1-client-protocol.h"
#include "memory_file.hpp"
#include "virtual-keyboard-unstable-v1-client-protocol.h"
#include "wlr-virtual-pointer-unstable-v1-client-protocol.h"
#include "xdg-activation-v1-client-protocol.h"

#include <chrono>
#include <unistd.h>
#include <wayland-client.h>

namespace test
{

template <class T> static T *bind(seat &s, const wl_interface &interface)
{
    return static_cast<T *>(s.owner().bind(interface, 1));
}

// Programs tell a click that chooses from a menu by the time since another one opened it.
static uint32_t now_msec()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return uint32_t(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

virtual_keyboard::virtual_keyboard(seat &s)
    : manager(bind<zwp_virtual_keyboard_manager_v1>(s, zwp_virtual_keyboard_manager_v1_interface)),
      object(zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(manager.get(), s.get()))
{
}

virtual_keyboard::~virtual_keyboard() = default;

void virtual_keyboard::keymap(const std::string &text)
{
    const int fd = memory_file<char>(text.size() + 1, [&](char *memory) { text.copy(memory, text.size()); });
    keymap(fd, uint32_t(text.size() + 1));
    close(fd);
}

void virtual_keyboard::keymap(int fd, uint32_t size)
{
    zwp_virtual_keyboard_v1_keymap(object.get(), WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, fd, size);
}

void virtual_keyboard::key(uint32_t code, bool down)
{
    zwp_virtual_keyboard_v1_key(object.get(), now_msec(), code,
                                down ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED);
}

void virtual_keyboard::modifiers(uint32_t depressed)
{
    zwp_virtual_keyboard_v1_modifiers(object.get(), depressed, 0, 0, 0);
}

virtual_pointer::virtual_pointer(seat &s)
    : manager(bind<zwlr_virtual_pointer_manager_v1>(s, zwlr_virtual_pointer_manager_v1_interface)),
      object(zwlr_virtual_pointer_manager_v1_create_virtual_pointer(manager.get(), s.get()))
{
}

virtual_pointer::~virtual_pointer() = default;

void virtual_pointer::move(double dx, double dy)
{
    zwlr_virtual_pointer_v1_motion(object.get(), now_msec(), wl_fixed_from_double(dx),
                                   wl_fixed_from_double(dy));
    zwlr_virtual_pointer_v1_frame(object.get());
}

void virtual_pointer::move_to(uint32_t x, uint32_t y, uint32_t width, uint32_t height)
{
    zwlr_virtual_pointer_v1_motion_absolute(object.get(), now_msec(), x, y, width, height);
    zwlr_virtual_pointer_v1_frame(object.get());
}

void virtual_pointer::button(uint32_t code, bool down)
{
    zwlr_virtual_pointer_v1_button(object.get(), now_msec(), code,
                                   down ? WL_POINTER_BUTTON_STATE_PRESSED : WL_POINTER_BUTTON_STATE_RELEASED);
    zwlr_virtual_pointer_v1_frame(object.get());
}

struct inhibitor_events {
    static void active(void *data, zwp_keyboard_shortcuts_inhibitor_v1 *)
    {
        static_cast<shortcuts_inhibitor *>(data)->is_active = true;
    }
    static void inactive(void *data, zwp_keyboard_shortcuts_inhibitor_v1 *)
    {
        static_cast<shortcuts_inhibitor *>(data)->is_active = false;
    }
};

shortcuts_inhibitor::shortcuts_inhibitor(seat &s, window &w)
    : manager(bind<zwp_keyboard_shortcuts_inhibit_manager_v1>(
          s, zwp_keyboard_shortcuts_inhibit_manager_v1_interface)),
      object(zwp_keyboard_shortcuts_inhibit_manager_v1_inhibit_shortcuts(manager.get(), w.get(), s.get()))
{
    static constexpr zwp_keyboard_shortcuts_inhibitor_v1_listener listener{
        .active = inhibitor_events::active,
        .inactive = inhibitor_events::inactive,
    };
    zwp_keyboard_shortcuts_inhibitor_v1_add_listener(object.get(), &listener, this);
}

shortcuts_inhibitor::~shortcuts_inhibitor() = default;

struct activation_events {
    static void done(void *data, xdg_activation_token_v1 *, const char *token)
    {
        static_cast<activation *>(data)->token = token;
    }
};

activation::activation(client &c)
    : manager(static_cast<xdg_activation_v1 *>(c.bind(xdg_activation_v1_interface, 1))),
      request(xdg_activation_v1_get_activation_token(manager.get()))
{
    static constexpr xdg_activation_token_v1_listener listener{.done = activation_events::done};
    xdg_activation_token_v1_add_listener(request.get(), &listener, this);
    xdg_activation_token_v1_commit(request.get());
}

activation::~activation() = default;

void activation::activate(wl_surface *surface)
{
    xdg_activation_v1_activate(manager.get(), token.c_str(), surface);
}

struct idle_events {
    static void idled(void *data, ext_idle_notification_v1 *) { static_cast<idle_watch *>(data)->idled++; }
    static void resumed(void *data, ext_idle_notification_v1 *)
    {
        static_cast<idle_watch *>(data)->resumed++;
    }
};

idle_watch::idle_watch(seat &s)
    : notifier(bind<ext_idle_notifier_v1>(s, ext_idle_notifier_v1_interface)),
      object(ext_idle_notifier_v1_get_idle_notification(notifier.get(), 0, s.get()))
{
    static constexpr ext_idle_notification_v1_listener listener{
        .idled = idle_events::idled,
        .resumed = idle_events::resumed,
    };
    ext_idle_notification_v1_add_listener(object.get(), &listener, this);
}

idle_watch::~idle_watch() = default;

} // namespace test
