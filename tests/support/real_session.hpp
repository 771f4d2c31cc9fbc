// A running session of the real binary, and programs in it.
#pragma once

#include "picture.hpp"
#include "process.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace test
{

class real_session : public testing::Test
{
protected:
    real_session();
    // Ends the session in order.
    ~real_session() override;

    // Runs a program with the session's sockets in its environment.
    [[nodiscard]] process run(const std::vector<std::string> &command) const;
    // Runs vantore-msg.
    [[nodiscard]] process message(std::vector<std::string> arguments) const;
    // Runs vantore-msg, which must succeed, and returns its output.
    [[nodiscard]] std::string output_of(const std::vector<std::string> &arguments) const;

    private_world world;
    process compositor;
};

} // namespace test
