// A user who types and points in a session that runs in another process.
#pragma once

#include "wayland_client.hpp"
#include "wayland_devices.hpp"

#include <filesystem>
#include <memory>

namespace test
{

class remote_user
{
public:
    // Plugs in a pointer, and a keyboard with the usual American keymap.
    explicit remote_user(const std::filesystem::path &wayland_socket);

    void tap(uint32_t key);
    // Taps the key while modifiers are held; `modifiers` are bits of WLR_MODIFIER_*.
    void chord(uint32_t modifiers, uint32_t key);

    // The coordinates are those of a session with one output of 1280x720.
    void move_to(int x, int y);
    void press();
    void release();
    void click(int x, int y);

private:
    void finish();

    client connection;
    std::unique_ptr<test::seat> seat;
    std::unique_ptr<virtual_keyboard> keyboard;
    std::unique_ptr<virtual_pointer> pointer;
};

} // namespace test
