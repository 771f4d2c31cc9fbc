#include "remote_user.hpp"

#include "handles.hpp"
#include "process.hpp"

#include <cstdlib>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xkbcommon/xkbcommon.h>

namespace test
{

int connect_to(const std::filesystem::path &socket)
{
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socket.native().copy(address.sun_path, sizeof address.sun_path - 1);
    if (fd < 0 || connect(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0)
        return fd;
    close(fd);
    return -1;
}

static std::string us_keymap()
{
    const handle<xkb_context, xkb_context_unref> context{xkb_context_new(XKB_CONTEXT_NO_FLAGS)};
    const handle<xkb_keymap, xkb_keymap_unref> keymap{
        xkb_keymap_new_from_names(context.get(), nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS)};
    const handle<char, free> text{xkb_keymap_get_as_string(keymap.get(), XKB_KEYMAP_FORMAT_TEXT_V1)};
    return text.get();
}

remote_user::remote_user(const std::filesystem::path &wayland_socket) : connection(connect_to(wayland_socket))
{
    (void)eventually([this] { return connection.pump(), connection.ready(); });
    seat = std::make_unique<test::seat>(connection);
    keyboard = std::make_unique<virtual_keyboard>(*seat);
    keyboard->keymap(us_keymap());
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
