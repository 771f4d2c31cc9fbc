#include "real_session.hpp"

#include "places.hpp"

#include <csignal>
#include <cstdio>
#include <fstream>

namespace test
{

static std::vector<std::string> joined(std::vector<std::string> prefix,
                                       const std::vector<std::string> &command)
{
    prefix.append_range(command);
    return prefix;
}

real_session::real_session(std::vector<std::string> prefix)
    : compositor(joined(std::move(prefix), test::compositor()), world.environment)
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

process real_session::message(const std::vector<std::string> &arguments) const
{
    return run(joined({vantore_msg_binary}, arguments));
}

std::string real_session::output_of(const std::vector<std::string> &arguments) const
{
    process tool = message(arguments);
    EXPECT_THAT(tool.wait(), testing::Optional(0)) << tool.output();
    return tool.output();
}

std::string real_session::x_display() const
{
    for (int number = 0; number < 33; number++) {
        pid_t owner = 0;
        std::ifstream{"/tmp/.X" + std::to_string(number) + "-lock"} >> owner;
        if (owner == compositor.pid())
            return ":" + std::to_string(number);
    }
    ADD_FAILURE() << "no X display";
    return ":999";
}

wlr_box real_session::box_of(const std::string &app_id) const
{
    const std::string list = output_of({"windows"});
    const size_t window = app_id.empty() ? 0 : list.find(R"("app_id":")" + app_id + '"');
    const size_t rect = list.find(R"("rect":)", window == std::string::npos ? list.size() : window);
    wlr_box box{};
    if (rect == std::string::npos ||
        sscanf(list.c_str() + rect, R"("rect":{"x":%d,"y":%d,"width":%d,"height":%d})", &box.x, &box.y,
               &box.width, &box.height) != 4)
        return {};
    return box;
}

image real_session::screenshot() const
{
    const std::filesystem::path path = world.directory() / "picture.png";
    (void)output_of({"capture", "all", path});
    return image::load(path);
}

} // namespace test
