// The real binary really starts the user's programs, and reloads on a real signal.

#include "support/files.hpp"
#include "support/process.hpp"

#include <csignal>
#include <format>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using test::eventually;
using testing::Optional;

namespace
{

struct programs : testing::Test {
    programs() { std::filesystem::create_directory(world.directory() / "config/autostart"); }

    // Writes a program into PATH. The program records its arguments, one a line, and then the mask of signals
    // that it blocks. The shell itself reads that mask, because it blocks more signals while it starts other
    // programs.
    void recording_program(const std::string &name) const
    {
        world.write_program(name, std::format(R"(exec >'{0}.new'
printf '%s\n' "$@"
while read -r name value; do [ "$name" != SigBlk: ] || echo "blocks $value"; done </proc/self/status
mv '{0}.new' '{0}')",
                                              record(name).string()));
    }

    [[nodiscard]] std::filesystem::path record(const std::string &name) const
    {
        return world.directory() / (name + ".record");
    }

    // Returns what the program wrote when it last ran, or an empty text if it never ran.
    [[nodiscard]] std::string recorded(const std::string &name) const
    {
        (void)eventually([&] { return std::filesystem::exists(record(name)); });
        return test::contents(record(name));
    }

    void write_config(const std::string &name, std::string_view text) const
    {
        std::ofstream{world.directory() / "config" / name} << text;
    }

    [[nodiscard]] test::process start() const { return {test::compositor(), world.environment}; }

    static void end(test::process &compositor)
    {
        compositor.send(SIGTERM);
        EXPECT_THAT(compositor.wait(), Optional(0)) << compositor.output();
    }

    test::private_world world;
};

const char *const running = "vantore-comp M4c running";
const char *const nothing_blocked = "blocks 0000000000000000\n";

TEST_F(programs, of_both_autostart_sources_run_and_can_be_hung_up)
{
    recording_program("from-file");
    recording_program("from-entry");
    write_config("vantore/autostart.conf", "no-such-program\nfrom-file one 'two three' # four\n");
    write_config("autostart/entry.desktop",
                 "[Desktop Entry]\nExec=from-entry %U 100%%\nTryExec=from-entry\n");
    write_config("autostart/other.desktop", "[Desktop Entry]\nExec=from-entry other\nOnlyShowIn=Other;\n");
    test::process compositor = start();
    EXPECT_EQ(recorded("from-file"), std::string{"one\ntwo three\n"} + nothing_blocked);
    EXPECT_EQ(recorded("from-entry"), std::string{"100%\n"} + nothing_blocked);
    ASSERT_TRUE(compositor.says(running));
    end(compositor);
}

// Includes zombies.
std::string children_of(pid_t pid)
{
    return test::contents(std::format("/proc/{0}/task/{0}/children", pid));
}

TEST_F(programs, tell_the_user_of_bad_lines_after_a_reload)
{
    recording_program("notify-send");
    test::process compositor = start();
    ASSERT_TRUE(compositor.says(running));
    write_config("vantore/keybinds.conf", "$mod+nokey = close\n$mod+w = nonsense\n$mod+q = close\n");
    compositor.send(SIGHUP);
    EXPECT_EQ(recorded("notify-send"),
              std::string{"-a\nVantore\nConfig\n"
                          "Reloaded with 2 issue(s) — check ~/.config/vantore (bad lines ignored)\n"} +
                  nothing_blocked);
    EXPECT_TRUE(compositor.says("vantore-comp: Reloaded with 2 issue(s)"));
    EXPECT_TRUE(eventually([&] { return children_of(compositor.pid()).empty(); }));
    end(compositor);
}

TEST_F(programs, that_show_notifications_may_be_missing)
{
    world.environment["PATH"] = world.directory() / "bin";
    auto command = test::compositor();
    command.front() = "/usr/bin/env";
    test::process compositor{command, world.environment};
    ASSERT_TRUE(compositor.says(running));
    write_config("vantore/keybinds.conf", "$mod+nokey = close\n");
    compositor.send(SIGHUP);
    EXPECT_TRUE(compositor.says("vantore-comp: Reloaded with 1 issue(s)"));
    write_config("vantore/keybinds.conf", "");
    compositor.send(SIGHUP);
    EXPECT_TRUE(compositor.says("vantore-comp: config reloaded"));
    end(compositor);
}

TEST_F(programs, may_hang_the_session_up_at_any_moment_of_its_start)
{
    for (const char *moment : {"Creating headless backend", "Shaders Initialized",
                               "Starting headless backend", "output HEADLESS-1 online"}) {
        test::process compositor = start();
        ASSERT_TRUE(compositor.says(moment)) << compositor.output();
        compositor.send(SIGHUP);
        EXPECT_TRUE(compositor.says("vantore-comp: config reloaded")) << moment << '\n'
                                                                      << compositor.output();
        end(compositor);
    }
}

} // namespace
