// A session of the real binary that runs, and programs in it.
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
    // The orderly end.
    ~real_session() override;

    // A program with the session's sockets in its environment.
    [[nodiscard]] process run(const std::vector<std::string> &command) const;
    // vantore-msg.
    [[nodiscard]] process message(std::vector<std::string> arguments) const;
    // The output of a call of vantore-msg that is to succeed.
    [[nodiscard]] std::string output_of(const std::vector<std::string> &arguments) const;

    private_world world;
    process compositor;
};

} // namespace test
