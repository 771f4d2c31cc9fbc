#include "real_session.hpp"

#include "places.hpp"

#include <csignal>

namespace test
{

real_session::real_session() : compositor(test::compositor(), world.environment)
{
    const std::string mark = "IPC listening on ";
    EXPECT_TRUE(compositor.says(mark)) << compositor.output();
    const std::string log = compositor.output();
    const size_t at = log.find(mark) + mark.size();
    world.environment["VANTORESOCK"] = log.substr(at, log.find('\n', at) - at);
    world.environment["WAYLAND_DISPLAY"] = "wayland-0";
    world.environment["GDK_BACKEND"] = "wayland";
    world.environment["NO_AT_BRIDGE"] = "1";
    EXPECT_TRUE(compositor.says("running — WAYLAND_DISPLAY=wayland-0"));
}

real_session::~real_session()
{
    compositor.send(SIGTERM);
    EXPECT_THAT(compositor.wait(), testing::Optional(0)) << compositor.output();
}

process real_session::run(const std::vector<std::string> &command) const
{
    return {command, world.environment};
}

process real_session::message(std::vector<std::string> arguments) const
{
    arguments.insert(arguments.begin(), vantore_msg_binary);
    return run(arguments);
}

std::string real_session::output_of(const std::vector<std::string> &arguments) const
{
    process tool = message(arguments);
    EXPECT_THAT(tool.wait(), testing::Optional(0)) << tool.output();
    return tool.output();
}

} // namespace test
