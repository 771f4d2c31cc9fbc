#include "remote_user.hpp"

#include "made_up_input.hpp"
#include "process.hpp"
#include "sockets.hpp"

namespace test
{

remote_user::remote_user(const std::filesystem::path &wayland_socket) : connection(connect_to(wayland_socket))
{
    (void)eventually([this] { return connection.pump(), connection.ready(); });
    seat = std::make_unique<test::seat>(connection);
    keyboard = std::make_unique<virtual_keyboard>(*seat);
    keyboard->keymap(keymap_text("us"));
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

void remote_user::finish()
{
    const int id = connection.roundtrip_begin();
    (void)eventually([&] { return connection.pump(), connection.roundtrip_done(id); });
}

} // namespace test
