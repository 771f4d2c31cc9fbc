#include "spawn.hpp"

#include "descriptors.hpp"
#include "platform.hpp"
#include "support/isolation.hpp"

#include <csignal>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

struct spawning : testing::Test {
    test::isolation world;
};

TEST_F(spawning, an_app_goes_through_the_launcher_as_one_quoted_argument)
{
    spawn_app("foot --title 'my term'");
    EXPECT_THAT(world.spawned(), ElementsAre("vantore-launch 'foot --title '\\''my term'\\'''"));
}

TEST_F(spawning, nothing_is_started_for_no_command)
{
    spawn_app(nullptr);
    spawn_app("");
    EXPECT_THAT(world.spawned(), IsEmpty());
}

TEST_F(spawning, an_overlong_command_is_cut_and_still_closed)
{
    spawn_app(std::string(5000, 'x').c_str());
    ASSERT_EQ(world.spawned().size(), 1U);
    const std::string &line = world.spawned().front();
    EXPECT_EQ(line.size(), 4091U);
    EXPECT_EQ(line.back(), '\'');
    EXPECT_EQ(line.find('\'', 16), line.size() - 1);
}

TEST_F(spawning, an_overlong_command_of_quotes_never_outgrows_the_launchers_buffer)
{
    for (size_t lead = 0; lead < 4; lead++) {
        spawn_app((std::string(lead, 'x') + std::string(5000, '\'')).c_str());
        EXPECT_LT(world.spawned().back().size(), 4096U);
    }
}

TEST_F(spawning, a_program_is_started_with_its_arguments)
{
    const char *const command[]{"say", "two words", "$HOME", nullptr};
    spawn_program(command);
    EXPECT_THAT(world.programs(), ElementsAre(ElementsAre("say", "two words", "$HOME")));
    EXPECT_THAT(world.spawned(), IsEmpty());
}

// Starts something for real and returns what it wrote to this process's standard output.
template <class Start> static std::string output_of(Start start)
{
    int ends[2];
    EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const int saved = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
    dup2(ends[1], STDOUT_FILENO);
    start();
    dup2(saved, STDOUT_FILENO);
    close(saved);
    close(ends[1]);
    std::string text;
    char byte = 0;
    pollfd wait{.fd = ends[0], .events = POLLIN, .revents = 0};
    while (poll(&wait, 1, 5000) > 0 && read(ends[0], &byte, 1) == 1)
        text += byte;
    close(ends[0]);
    return text;
}

std::string output_of(const char *line)
{
    return output_of([line] { fork_shell_line(line); });
}

TEST(shell_line, runs_detached_and_leaves_no_child_to_reap)
{
    EXPECT_EQ(output_of("echo hello"), "hello\n");
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST(shell_line, runs_in_a_session_of_its_own)
{
    const std::string session = output_of("cut -d ' ' -f 6 /proc/$$/stat");
    ASSERT_FALSE(session.empty());
    EXPECT_NE(session, std::to_string(getsid(0)) + "\n");
}

TEST(shell_line, gives_a_quoted_argument_to_the_program_unchanged)
{
    const std::string line = "set -- 'it'\\''s; $HOME \"x\"'; printf '%s' \"$1\"";
    EXPECT_EQ(output_of(line.c_str()), "it's; $HOME \"x\"");
}

TEST(shell_line, may_be_hung_up_though_we_hold_hangups)
{
    sigset_t hangup, before;
    sigemptyset(&hangup);
    sigaddset(&hangup, SIGHUP);
    sigprocmask(SIG_BLOCK, &hangup, &before);
    const std::string blocked = output_of("exec grep SigBlk /proc/self/status");
    sigprocmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(blocked, "SigBlk:\t0000000000000000\n");
}

TEST(shell_line, may_write_into_a_pipe_that_is_closed_and_is_ended_by_that)
{
    const auto before = signal(SIGPIPE, SIG_IGN);
    const std::string ignored = output_of("exec grep SigIgn /proc/self/status");
    signal(SIGPIPE, before);
    const unsigned long mask = strtoul(ignored.c_str() + ignored.find_last_of('\t') + 1, nullptr, 16);
    EXPECT_EQ(mask & (1UL << (SIGPIPE - 1)), 0U) << ignored;
}

TEST(shell_line, has_its_standard_descriptors_open)
{
    const int input = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10);
    close(STDIN_FILENO);
    const std::string open = output_of("readlink /proc/self/fd/0");
    dup2(input, STDIN_FILENO);
    close(input);
    EXPECT_EQ(open, "/dev/null\n");
}

TEST(shell_line, has_the_limit_of_descriptors_that_the_session_found)
{
    rlimit found{};
    getrlimit(RLIMIT_NOFILE, &found);
    descriptors_raise_limit();
    rlimit raised{};
    getrlimit(RLIMIT_NOFILE, &raised);
    EXPECT_EQ(raised.rlim_cur, found.rlim_max);
    EXPECT_EQ(output_of("ulimit -Sn"), std::to_string(found.rlim_cur) + "\n");
    setrlimit(RLIMIT_NOFILE, &found);
}

TEST(program, is_found_in_the_path_and_no_shell_reads_its_arguments)
{
    const char *const command[]{"printf", "%s", "it's; $HOME \"x\"", nullptr};
    EXPECT_EQ(output_of([&] { fork_program(command); }), "it's; $HOME \"x\"");
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST(program, that_is_missing_is_passed_over)
{
    const char *const command[]{"no-such-program", nullptr};
    EXPECT_EQ(output_of([&] { fork_program(command); }), "");
}

} // namespace
