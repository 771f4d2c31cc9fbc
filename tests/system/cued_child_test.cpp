// The child program that crashes on demand in tests of supervision.

#include "support/cue.hpp"
#include "support/process.hpp"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::Optional;

namespace
{

struct cued_child : testing::Test {
    [[nodiscard]] test::process start() const { return {cue.child(), world.environment}; }

    test::private_world world;
    test::cue cue{world.directory() / "cues"};
};

TEST_F(cued_child, stays_until_it_gets_a_cue_and_then_exits_with_the_status_that_it_names)
{
    test::process child = start();
    ASSERT_TRUE(child.says("waiting\n"));
    EXPECT_EQ(kill(child.pid(), 0), 0);
    cue.exit(7);
    EXPECT_THAT(child.wait(), Optional(7));
}

TEST_F(cued_child, dies_of_the_signal_of_its_cue)
{
    test::process first = start();
    cue.segv();
    EXPECT_THAT(first.wait(), Optional(128 + SIGSEGV));
    test::process second = start();
    cue.abort();
    EXPECT_THAT(second.wait(), Optional(128 + SIGABRT));
}

TEST_F(cued_child, takes_a_cue_that_was_given_before_it_started)
{
    cue.exit(3);
    test::process child = start();
    EXPECT_THAT(child.wait(), Optional(3));
}

TEST_F(cued_child, can_be_ended_without_a_cue)
{
    test::process child = start();
    ASSERT_TRUE(child.says("waiting\n"));
    child.send(SIGTERM);
    EXPECT_THAT(child.wait(), Optional(128 + SIGTERM));
}

} // namespace
