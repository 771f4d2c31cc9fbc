// Who receives an announcement, and in which order.

#include "broadcast.hpp"

#include "server.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>

using testing::ElementsAre;

namespace
{

std::vector<std::string> heard;

void first(vantore_server &, vnt_event event)
{
    heard.push_back("first " + std::to_string(event));
}

void second(vantore_server &, vnt_event event)
{
    heard.push_back("second " + std::to_string(event));
}

struct broadcast : testing::Test {
    broadcast() { heard.clear(); }
    ~broadcast() override
    {
        broadcast_unlisten(first);
        broadcast_unlisten(second);
    }

    std::unique_ptr<vantore_server> server = std::make_unique<vantore_server>();
};

TEST_F(broadcast, reaches_receivers_in_the_order_in_which_they_registered)
{
    broadcast_listen(first);
    broadcast_listen(second);
    ipc_broadcast(*server, VNT_EVT_WINDOWS);
    EXPECT_THAT(heard, ElementsAre("first 2", "second 2"));
}

TEST_F(broadcast, reaches_a_receiver_that_registered_twice_only_once)
{
    broadcast_listen(first);
    broadcast_listen(first);
    ipc_broadcast(*server, VNT_EVT_OUTPUTS);
    EXPECT_THAT(heard, ElementsAre("first 3"));
}

TEST_F(broadcast, no_longer_reaches_a_receiver_that_has_left_and_keeps_the_order_of_the_others)
{
    broadcast_listen(first);
    broadcast_listen(second);
    broadcast_unlisten(first);
    broadcast_listen(first);
    ipc_broadcast(*server, VNT_EVT_WORKSPACES);
    EXPECT_THAT(heard, ElementsAre("second 1", "first 1"));
}

} // namespace
