// The real functions behind g_platform, which other tests replace.

#include "platform.hpp"

#include <csignal>
#include <ctime>
#include <gtest/gtest.h>
#include <poll.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

// Waits up to ten seconds for a byte on the descriptor.
bool hears_a_byte(int fd)
{
    pollfd waited{.fd = fd, .events = POLLIN, .revents = 0};
    char byte = 0;
    return poll(&waited, 1, 10'000) == 1 && read(fd, &byte, 1) == 1;
}

struct pipe_ends {
    pipe_ends() { EXPECT_EQ(pipe(fds), 0); }
    ~pipe_ends()
    {
        close(fds[0]);
        close(fds[1]);
    }
    int fds[2]{-1, -1};
};

TEST(platform, reads_the_wall_clock)
{
    const int64_t before = time(nullptr);
    const int64_t now = g_platform.wall_clock_s();
    EXPECT_GE(now, before);
    EXPECT_LE(now, int64_t{time(nullptr)});
}

TEST(platform, picks_numbers_below_a_limit)
{
    bool seen[3]{};
    for (int i = 0; i < 1000; i++) {
        const uint32_t picked = g_platform.random_below(3);
        ASSERT_LT(picked, 3U);
        seen[picked] = true;
    }
    EXPECT_TRUE(seen[0] && seen[1] && seen[2]);
    EXPECT_EQ(g_platform.random_below(0), 0U);
}

TEST(platform, runs_a_worker_on_a_thread_of_its_own_without_signals_and_with_low_priority)
{
    struct job {
        pipe_ends pipe;
        pthread_t thread{};
        bool blocks_terminations = false;
        int niceness = 0;
    } shared;
    ASSERT_TRUE(g_platform.start_worker(
        [](void *data) {
            auto &work = *static_cast<job *>(data);
            sigset_t blocked;
            pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
            work.blocks_terminations = sigismember(&blocked, SIGTERM) == 1;
            work.thread = pthread_self();
            work.niceness = getpriority(PRIO_PROCESS, id_t(gettid()));
            (void)!write(work.pipe.fds[1], "x", 1);
        },
        &shared));
    ASSERT_TRUE(hears_a_byte(shared.pipe.fds[0]));
    EXPECT_EQ(pthread_equal(shared.thread, pthread_self()), 0);
    EXPECT_TRUE(shared.blocks_terminations);
    EXPECT_GT(shared.niceness, getpriority(PRIO_PROCESS, id_t(gettid())));
}

TEST(platform, knows_once_that_a_child_has_ended)
{
    pipe_ends pipe;
    const pid_t child =
        g_platform.start_child(("echo >&" + std::to_string(pipe.fds[1]) + "; exec sleep 1000").c_str());
    ASSERT_GT(child, 0);
    ASSERT_TRUE(hears_a_byte(pipe.fds[0]));
    EXPECT_FALSE(g_platform.child_has_ended(child));
    EXPECT_EQ(getsid(child), child);
    ASSERT_EQ(kill(child, SIGKILL), 0);
    siginfo_t ended{};
    ASSERT_EQ(waitid(P_PID, id_t(child), &ended, WEXITED | WNOWAIT), 0);
    EXPECT_TRUE(g_platform.child_has_ended(child));
    EXPECT_FALSE(g_platform.child_has_ended(child));
}

} // namespace
