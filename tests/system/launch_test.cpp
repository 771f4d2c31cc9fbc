// Keys that start programs, in a session of the real binary.

#include "support/places.hpp"
#include "support/process.hpp"
#include "support/remote_user.hpp"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

using test::eventually;

namespace
{

struct program_keys : testing::Test {
    program_keys() { std::filesystem::create_directory(world.directory() / "bin"); }

    // Starts the session, as ./dev run does.
    [[nodiscard]] test::process start() const
    {
        std::vector<std::string> command = test::compositor();
        command.insert(command.begin(), test::with_launcher);
        return {command, world.environment};
    }

    // Writes a shell script into a folder that comes first in PATH.
    void write_program(const char *name, const std::string &script)
    {
        const std::filesystem::path path = world.directory() / "bin" / name;
        std::ofstream{path} << "#!/bin/sh\n" << script;
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        world.environment["PATH"] = (world.directory() / "bin").string() + ":" + getenv("PATH");
    }

    void press_terminal_key() const
    {
        test::remote_user user{world.directory() / "run/wayland-0"};
        user.chord(0x40, KEY_ENTER); // Logo
    }

    test::private_world world;
};

std::string contents(const std::filesystem::path &path)
{
    std::ifstream file{path};
    return {std::istreambuf_iterator<char>{file}, {}};
}

const char *const running = "running — WAYLAND_DISPLAY=wayland-0 ";

TEST_F(program_keys, open_a_terminal)
{
    test::process compositor = start();
    ASSERT_TRUE(compositor.says(running)) << compositor.output();
    press_terminal_key();
    const std::string log = compositor.output(), mark = "IPC listening on ";
    const size_t at = log.find(mark) + mark.size();
    world.environment["VANTORESOCK"] = log.substr(at, log.find('\n', at) - at);
    EXPECT_TRUE(eventually([&] {
        test::process windows{{test::vantore_msg_binary, "windows"}, world.environment};
        return windows.wait() == 0 && windows.output().contains(R"("app_id":"foot")");
    })) << compositor.output();
    compositor.send(SIGTERM);
    EXPECT_THAT(compositor.wait(), testing::Optional(0)) << compositor.output();
}

TEST_F(program_keys, use_another_launcher_that_is_earlier_in_the_path)
{
    const auto heard = world.directory() / "heard";
    write_program("vantore-launch", "printf '%s\\n' \"$@\" > " + heard.string() + "\n");
    test::process compositor = start();
    ASSERT_TRUE(compositor.says(running)) << compositor.output();
    press_terminal_key();
    EXPECT_TRUE(eventually([&] { return contents(heard).contains("|| foot ||"); })) << compositor.output();
    compositor.send(SIGTERM);
    EXPECT_THAT(compositor.wait(), testing::Optional(0)) << compositor.output();
}

} // namespace
