#include "remote_user.hpp"

#include "made_up_input.hpp"
#include "process.hpp"
#include "sockets.hpp"

#include <linux/input-event-codes.h>

namespace test
{

remote_user::remote_user(const std::filesystem::path &wayland_socket) : connection(connect_to(wayland_socket))
{
    (void)eventually([this] { return connection.pump(), connection.ready(); });
    seat = std::make_unique<test::seat>(connection);
    keyboard = std::make_unique<virtual_keyboard>(*seat);
    keyboard->keymap(keymap_text("us"));
    pointer = std::make_unique<virtual_pointer>(*seat);
    finish();
}

void remote_user::tap(uint32_t key)
{
    keyboard->key(key, true);
    keyboard->key(key, false);
    finish();
}

void remote_user::chord(uint32_t modifiers, uint32_t key)
{
    keyboard->modifiers(modifiers);
    tap(key);
    keyboard->modifiers(0);
    finish();
}

void remote_user::move_to(int x, int y)
{
    pointer->move_to(uint32_t(x), uint32_t(y), 1280, 720);
    finish();
}

void remote_user::press()
{
    pointer->button(BTN_LEFT, true);
    finish();
}

void remote_user::release()
{
    pointer->button(BTN_LEFT, false);
    finish();
}

void remote_user::click(int x, int y)
{
    move_to(x, y);
    press();
    release();
}

void remote_user::finish()
{
    const int id = connection.roundtrip_begin();
    (void)eventually([&] { return connection.pump(), connection.roundtrip_done(id); });
}

} // namespace test
