// A running session of the real binary, and programs in it.
#pragma once

#include "picture.hpp"
#include "process.hpp"

#include "wlr.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace test
{

class real_session : public testing::Test
{
protected:
    // The command that starts the compositor comes after the prefix.
    explicit real_session(std::vector<std::string> prefix = {});
    // Ends the session in order.
    ~real_session() override;

    // Runs a program with the session's sockets in its environment.
    [[nodiscard]] process run(const std::vector<std::string> &command) const;
    // Runs vantore-msg.
    [[nodiscard]] process message(const std::vector<std::string> &arguments) const;
    // Runs vantore-msg, which must succeed, and returns its output.
    [[nodiscard]] std::string output_of(const std::vector<std::string> &arguments) const;

    [[nodiscard]] std::filesystem::path wayland_socket() const { return world.directory() / "run/wayland-0"; }
    // Returns the X display whose lock file the compositor holds.
    [[nodiscard]] std::string x_display() const;
    // Returns the content of the window raised last of all or of an application, or an empty box when there
    // is none.
    [[nodiscard]] wlr_box box_of(const std::string &app_id = "") const;
    // Returns an empty picture on failure.
    [[nodiscard]] image screenshot() const;

    private_world world;
    process compositor;
};

} // namespace test
