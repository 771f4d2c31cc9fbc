// The launcher of the programs that keys start. Programs that it calls are scripts of the tests.

#include "support/files.hpp"
#include "support/places.hpp"
#include "support/process.hpp"
#include "support/sockets.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::Optional;

namespace
{

struct launcher : testing::Test {
    launcher() { world.write_program("notify-send", "printf '<%s>' \"$@\" > " + told_file().string()); }

    [[nodiscard]] std::filesystem::path told_file() const { return world.directory() / "told"; }

    // Lets the launcher find a user's service manager.
    void start_manager()
    {
        const std::filesystem::path path = world.directory() / "run/systemd/private";
        std::filesystem::create_directory(path.parent_path());
        manager = test::bind_to(path);
        ASSERT_GE(manager, 0);
    }

    ~launcher() override
    {
        if (manager >= 0)
            close(manager);
    }

    [[nodiscard]] test::process launch(const std::string &line) const
    {
        return {{test::vantore_launch, line}, world.environment};
    }

    // Returns the notification, or an empty text.
    [[nodiscard]] std::string told() const { return test::contents(told_file()); }

    test::private_world world;
    int manager = -1;
};

TEST_F(launcher, runs_a_line_with_quotes_and_spaces_as_it_is)
{
    test::process line = launch("printf '<%s>' 'it is' \"a  'b'\" \\$HOME '*'");
    EXPECT_THAT(line.wait(), Optional(0));
    EXPECT_EQ(line.output(), "<it is><a  'b'><$HOME><*>");
}

TEST_F(launcher, ends_with_the_status_of_the_line)
{
    EXPECT_THAT(launch("exit 3").wait(), Optional(3));
}

TEST_F(launcher, tells_the_user_what_is_not_installed)
{
    test::process line = launch("no-terminal --big || A=1 exec no-console 'a b'");
    EXPECT_THAT(line.wait(), Optional(127));
    EXPECT_THAT(line.output(), HasSubstr("vantore-launch: not installed: no-terminal no-console\n"));
    EXPECT_EQ(told(), "<-a><Vantore><--><Program not found><not installed: no-terminal no-console>");
}

TEST_F(launcher, knows_the_names_of_programs_in_quotes)
{
    test::process line = launch("'no terminal' -e 'a; b' || no\\ console || \"it's not\" \"a || \\\" b\"");
    EXPECT_THAT(line.wait(), Optional(127));
    EXPECT_THAT(line.output(), HasSubstr("not installed: no terminal no console it's not\n"));
}

TEST_F(launcher, leaves_out_what_only_the_shell_can_know)
{
    EXPECT_THAT(launch("$NO_TERMINAL no-terminal || no-console 2>&1 | $(echo no-pager)").wait(),
                Optional(127));
    EXPECT_THAT(told(), EndsWith("<not installed: no-console>"));
}

TEST_F(launcher, says_what_is_not_installed_also_where_nothing_shows_notifications)
{
    world.write_program("notify-send", "exit 1");
    test::process line = launch("no-terminal");
    EXPECT_THAT(line.wait(), Optional(127));
    EXPECT_THAT(line.output(), HasSubstr("vantore-launch: not installed: no-terminal\n"));
}

TEST_F(launcher, does_not_mind_a_missing_program_that_another_one_stands_in_for)
{
    EXPECT_THAT(launch("no-terminal || true").wait(), Optional(0));
    EXPECT_EQ(told(), "");
}

TEST_F(launcher, takes_no_status_of_a_program_for_a_missing_program)
{
    world.write_program("a terminal", "exit 127");
    for (const char *line : {"sh -c 'exit 127; no-terminal'", "'a terminal' -e 'no-terminal || no-console'",
                             "\"a terminal\" 2>&1"}) {
        test::process program = launch(line);
        EXPECT_THAT(program.wait(), Optional(127));
        EXPECT_EQ(program.output(), "");
        EXPECT_EQ(told(), "") << line;
    }
}

TEST_F(launcher, takes_one_line)
{
    test::process none{{test::vantore_launch}, world.environment};
    EXPECT_THAT(none.wait(), Optional(2));
    EXPECT_EQ(none.output(), "usage: vantore-launch LINE\n");
}

// The stand-in for systemd-run writes its options to the output and runs what comes after "--".
const char *const scope =
    "while [ \"$1\" != -- ]; do printf '<%s>' \"$1\" >&4; shift; done; shift; exec \"$@\"";

TEST_F(launcher, runs_the_line_in_a_scope_of_the_users_service_manager)
{
    start_manager();
    world.write_program("systemd-run", "exec 4>" + (world.directory() / "options").string() + "\n" + scope);
    test::process line = launch("printf '<%s>' 'a  b' \\$HOME; exit 3");
    EXPECT_THAT(line.wait(), Optional(3));
    EXPECT_EQ(line.output(), "<a  b><$HOME>");
    const std::string options = test::contents(world.directory() / "options");
    EXPECT_THAT(options, HasSubstr("<--user><--scope>"));
    EXPECT_THAT(options, HasSubstr("<--expand-environment=no>"));
}

TEST_F(launcher, tells_what_is_not_installed_from_within_a_scope)
{
    start_manager();
    world.write_program("systemd-run", std::string{"exec 4>/dev/null\n"} + scope);
    EXPECT_THAT(launch("no-terminal").wait(), Optional(127));
    EXPECT_THAT(told(), HasSubstr("<not installed: no-terminal>"));
}

TEST_F(launcher, runs_the_line_without_a_scope_when_the_manager_refuses_one)
{
    start_manager();
    world.write_program("systemd-run", "exit 1");
    test::process line = launch("echo here");
    EXPECT_THAT(line.wait(), Optional(0));
    EXPECT_EQ(line.output(), "here\n");
}

TEST_F(launcher, runs_a_line_that_fails_in_its_scope_only_once)
{
    start_manager();
    world.write_program("systemd-run", std::string{"exec 4>/dev/null\n"} + scope);
    test::process line = launch("echo here; kill -9 $$");
    EXPECT_THAT(line.wait(), Optional(128 + 9));
    EXPECT_EQ(line.output().rfind("here\n"), 0U) << line.output();
}

TEST_F(launcher, asks_for_no_scope_where_there_is_no_service_manager)
{
    world.write_program("systemd-run", "echo asked; exit 1");
    test::process line = launch("echo here");
    EXPECT_THAT(line.wait(), Optional(0));
    EXPECT_THAT(line.output(), Not(HasSubstr("asked")));
}

} // namespace
